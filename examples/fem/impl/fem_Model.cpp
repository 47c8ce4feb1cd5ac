#include "fem_Model.h"

#include "fem_MeshFile.h"
#include "fem_Names.h"

#include "omu_Arguments.h"
#include "omu_ObjectRef.h"
#include "omu_PrimNone.h"
#include "omu_PrimString.h"
#include "omu_ValueErrorException.h"

fem_Model::fem_Model(const cow_String& name) : m_name(name)
{
    static constexpr methodTable methods[] = {
        {"createPart", "createPart(name, path, body=0): reads one body of a mesh file, or all with body 0.",
         omu_AsMethod<&fem_Model::CreatePart>},
        {"deletePart", "deletePart(name)", omu_AsMethod<&fem_Model::DeletePart>},
        {"part", "part(name): the part.", omu_AsMethod<&fem_Model::GetPart>},
        {},
    };
    static constexpr memberTable members[] = {
        {"name", "The model's name.", omu_AsGetter<&fem_Model::GetName>, nullptr},
        {"partNames", "The names of its parts, sorted.", omu_AsGetter<&fem_Model::GetPartNames>, nullptr},
        {},
    };
    DescribeType("Model", methods, members);
}

cow_String fem_Model::AsString(int) const
{
    return "session.model(" + omu_PrimString(m_name).AsString(0) + ")";
}

void fem_Model::RenamePart(const cow_String& from, const cow_String& to)
{
    if (from != to) {
        fem_CheckNewName("part", to, m_parts.contains(to));
        auto part = m_parts.extract(from);
        part.key() = to;
        m_parts.insert(std::move(part));
    }
}

omu_Primitive* fem_Model::GetName()
{
    return new omu_PrimString(m_name);
}

omu_Primitive* fem_Model::GetPartNames()
{
    return fem_NamesOf(m_parts);
}

omu_Primitive* fem_Model::CreatePart(omu_Arguments& arguments)
{
    cow_String name;
    cow_String path;
    int body = fem_MeshFile::ALL_BODIES;
    arguments.Begin();
    arguments.Get(name, "name");
    arguments.Get(path, "path");
    arguments.Optional();
    arguments.Get(body, "body");
    arguments.End("createPart");
    fem_CheckNewName("part", name, m_parts.contains(name));
    fem_Mesh mesh = fem_MeshFile::Read(path).MeshOfBody(body);
    if (mesh.ElementCount() == 0) {
        omu_ValueErrorException("'" + path + "' has no elements of body " + cow_String(body))
            .Throw("examples/fem/impl/fem_Model", __LINE__);
    }
    const auto part = m_parts.try_emplace(name, std::make_unique<fem_Part>(*this, name, std::move(mesh))).first;
    return new omu_ObjectRef(*part->second);
}

omu_Primitive* fem_Model::GetPart(omu_Arguments& arguments)
{
    return new omu_ObjectRef(*m_parts.at(TakePartName(arguments, "part")));
}

omu_Primitive* fem_Model::DeletePart(omu_Arguments& arguments)
{
    m_parts.erase(TakePartName(arguments, "deletePart"));
    return new omu_PrimNone;
}

cow_String fem_Model::TakePartName(omu_Arguments& arguments, const char* method) const
{
    cow_String name;
    arguments.Begin();
    arguments.Get(name, "name");
    arguments.End(method);
    if (!m_parts.contains(name)) {
        fem_ThrowUnknownName("part", name);
    }
    return name;
}
