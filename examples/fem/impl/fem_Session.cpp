#include "fem_Session.h"

#include "fem_MeshFile.h"
#include "fem_Names.h"

#include "omu_Arguments.h"
#include "omu_ObjectRef.h"
#include "omu_PrimNone.h"

fem_Session::fem_Session()
{
    static constexpr methodTable methods[] = {
        {"bodies", "bodies(path): the numbers of the bodies in a mesh file.", omu_AsMethod<&fem_Session::Bodies>},
        {"createModel", "createModel(name)", omu_AsMethod<&fem_Session::CreateModel>},
        {"deleteModel", "deleteModel(name)", omu_AsMethod<&fem_Session::DeleteModel>},
        {"model", "model(name): the model.", omu_AsMethod<&fem_Session::GetModel>},
        {},
    };
    static constexpr memberTable members[] = {
        {"modelNames", "The names of the models, sorted.", omu_AsGetter<&fem_Session::GetModelNames>, nullptr},
        {},
    };
    DescribeType("Session", methods, members);
}

cow_String fem_Session::AsString(int) const
{
    return "session";
}

omu_Primitive* fem_Session::GetModelNames()
{
    return fem_NamesOf(m_models);
}

omu_Primitive* fem_Session::Bodies(omu_Arguments& arguments)
{
    cow_String path;
    arguments.Begin();
    arguments.Get(path, "path");
    arguments.End("bodies");
    const std::vector<int> bodies = fem_MeshFile::Read(path).Bodies();
    auto result = std::make_unique<omu_PrimTuple>(static_cast<int>(bodies.size()));
    for (const int body : bodies) {
        result->Put(body);
    }
    return result.release();
}

omu_Primitive* fem_Session::CreateModel(omu_Arguments& arguments)
{
    cow_String name;
    arguments.Begin();
    arguments.Get(name, "name");
    arguments.End("createModel");
    fem_CheckNewName("model", name, m_models.contains(name));
    const auto model = m_models.try_emplace(name, std::make_unique<fem_Model>(name)).first;
    return new omu_ObjectRef(*model->second);
}

omu_Primitive* fem_Session::GetModel(omu_Arguments& arguments)
{
    return new omu_ObjectRef(*m_models.at(TakeModelName(arguments, "model")));
}

omu_Primitive* fem_Session::DeleteModel(omu_Arguments& arguments)
{
    m_models.erase(TakeModelName(arguments, "deleteModel"));
    return new omu_PrimNone;
}

cow_String fem_Session::TakeModelName(omu_Arguments& arguments, const char* method) const
{
    cow_String name;
    arguments.Begin();
    arguments.Get(name, "name");
    arguments.End(method);
    if (!m_models.contains(name)) {
        fem_ThrowUnknownName("model", name);
    }
    return name;
}
