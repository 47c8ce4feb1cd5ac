#include "fem_Session.h"

#include "fem_MeshFile.h"

#include "omu_Arguments.h"
#include "omu_ObjectRef.h"
#include "omu_PrimNone.h"

fem_Session::fem_Session() : m_models(*this, "models")
{
    static constexpr methodTable methods[] = {
        {"bodies", "bodies(path: str | os.PathLike[str]) -> tuple[int, ...]: the numbers of the bodies in a mesh file.",
         omu_AsMethod<&fem_Session::Bodies>},
        {"createModel", "createModel(name: str) -> Model: a new one, empty.", omu_AsMethod<&fem_Session::CreateModel>},
        {"deleteModel", "deleteModel(name: str) -> None: with all that is in it.",
         omu_AsMethod<&fem_Session::DeleteModel>},
        {},
    };
    static constexpr memberTable members[] = {
        {"models", "-> Repository: The models by name.", omu_AsGetter<&fem_Session::GetModels>, nullptr},
        {},
    };
    DescribeType("Session", methods, members);
    DoNotJournal("bodies"); // a journal holds what changes the model
}

cow_String fem_Session::AsString(int) const
{
    return "session";
}

omu_Primitive* fem_Session::GetModels()
{
    return new omu_ObjectRef(m_models);
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
    omu_BrenowName name("Model-1", fem_Model::NAME_RULES);
    arguments.Begin();
    arguments.Get(name, "name");
    arguments.End("createModel");
    return new omu_ObjectRef(m_models.Add(std::make_unique<fem_Model>(*this, name.AsString())));
}

omu_Primitive* fem_Session::DeleteModel(omu_Arguments& arguments)
{
    cow_String name;
    arguments.Begin();
    arguments.Get(name, "name");
    arguments.End("deleteModel");
    m_models.Delete(name);
    return new omu_PrimNone;
}
