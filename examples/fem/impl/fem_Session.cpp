#include "fem_Session.h"

#include "fem_MeshFile.h"
#include "fem_Save.h"

#include "nex_TextException.h"
#include "omu_Arguments.h"
#include "omu_ObjectRef.h"
#include "omu_PrimNone.h"

#include <algorithm>

namespace
{

constexpr const char* SOURCE = "examples/fem/impl/fem_Session";

constexpr const char* ROOT = "session"; // in the store
const cls_FieldHandle SAVES("saves");
const cls_FieldHandle MODELS("models");

[[noreturn]] void FailFile(const fem_ModelFile& file, const char* what, int line)
{
    nex_TextException("'" + file.Path() + "' " + what).Throw(SOURCE, line);
}

omu_PrimTuple TupleOf(const std::vector<std::string>& texts)
{
    omu_PrimTuple tuple(static_cast<int>(texts.size()));
    for (const std::string& text : texts) {
        tuple.Put(cow_String(text));
    }
    return tuple;
}

} // namespace

fem_Session::fem_Session()
{
    static constexpr methodTable methods[] = {
        {"bodies", "bodies(path: str | os.PathLike[str]) -> tuple[int, ...]: the numbers of the bodies in a mesh file.",
         omu_AsMethod<&fem_Session::Bodies>},
        {"createModel", "createModel(name: str) -> Model: a new model, empty.",
         omu_AsMethod<&fem_Session::CreateModel>},
        {"deleteModel", "deleteModel(name: str) -> None: all that is in it goes, too.",
         omu_AsMethod<&fem_Session::DeleteModel>},
        {"open",
         "open(path: str | os.PathLike[str], readOnly: bool = False) -> tuple[str, ...]: replaces all models by those "
         "of "
         "a file, and tells of which classes it has objects that this program does not know; they stay in that file.",
         omu_AsMethod<&fem_Session::Open>},
        {"save",
         "save(path: str | os.PathLike[str] = '') -> None: saves all models, in place of those in the file; without a "
         "path to the file that they were opened from or last saved to.",
         omu_AsMethod<&fem_Session::Save>},
        {},
    };
    static constexpr memberTable members[] = {
        {"file", "-> str | None: The file that the models were opened from or last saved to.",
         omu_AsGetter<&fem_Session::GetFile>, nullptr},
        {"models", "-> Repository: The models by name.", omu_AsGetter<&fem_Session::GetModels>, nullptr},
        {},
    };
    DescribeType("Session", methods, members);
    fem_RegisterClasses(m_registrar);
    DoNotJournal("bodies"); // a journal holds what changes the model
}

void fem_Session::Register(cls_ClassRegistrar& registrar)
{
    registrar.CreateClassMD("Session", CLASS_ID, 1, nullptr, 1)
        .AddAttribute(SAVES, cls_ATTRIBUTE_INT, 1, cls_COLLECTION_NONE)
        .AddAttribute(MODELS, cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_STRING_KEYED);
}

cow_String fem_Session::AsString(int) const
{
    return "session";
}

omu_Primitive* fem_Session::GetFile()
{
    return m_file != nullptr ? static_cast<omu_Primitive*>(new omu_PrimString(m_file->Path())) : new omu_PrimNone;
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

omu_Primitive* fem_Session::Open(omu_Arguments& arguments)
{
    cow_String path;
    bool readOnly = false;
    arguments.Begin();
    arguments.Get(path, "path");
    arguments.Optional();
    arguments.Get(readOnly, "readOnly");
    arguments.End("open");
    if (m_file != nullptr && m_file->IsAt(path)) {
        RollBack(m_file->Store()); // what was not saved is about to go, and its lock would keep the file from opening
    }
    Read(fem_ModelFile::Open(path, readOnly, m_registrar));
    return TupleOf(m_file->Store().UnknownClasses()).Copy();
}

omu_Primitive* fem_Session::Save(omu_Arguments& arguments)
{
    cow_String path;
    arguments.Begin();
    arguments.Optional();
    arguments.Get(path, "path");
    arguments.End("save");
    if (path.IsEmpty() && m_file == nullptr) {
        omu_ValueErrorException("save needs a path: the session has no file yet").Throw(SOURCE, __LINE__);
    }
    if (m_file != nullptr && (path.IsEmpty() || m_file->IsAt(path))) {
        Write(m_file->Store(), /*isOtherFile=*/false);
        return new omu_PrimNone;
    }
    std::unique_ptr<fem_ModelFile> file = fem_ModelFile::OpenOrCreate(path, m_registrar);
    try {
        Write(file->Store(), /*isOtherFile=*/true);
    } catch (...) {
        fem_ModelFile::Abandon(std::move(file));
        throw;
    }
    m_file = std::move(file);
    return new omu_PrimNone;
}

void fem_Session::DBWrite(const cls_WriteVisitor& visitor, fem_Save& save) const
{
    if (visitor.StartWrite(CLASS_ID, m_uid) != 0) {
        visitor.Memento()->WriteInt(SAVES, m_saves + 1);
        m_models.DBWrite(cls_WriteVisitor(visitor, MODELS, nullptr), save);
    }
}

void fem_Session::Write(sql_Store& store, bool isOtherFile)
{
    fem_Save save(isOtherFile);
    try {
        if (!store.InTransaction()) {
            store.Begin();
        }
        if (!isOtherFile) {
            RequireUnchanged(store);
        }
        store.WriteRoot(ROOT, [&](const cls_WriteVisitor& visitor) { DBWrite(visitor, save); });
        store.Commit();
    } catch (...) {
        RollBack(store);
        throw;
    }
    ++m_saves;
    save.Commit();
}

void fem_Session::RollBack(sql_Store& store) const
{
    store.Rollback();
    try {
        m_models.Restore();
    } catch (const nex_TextException&) {
        // An array whose place in the file is gone says so to whoever asks for its values.
    }
}

void fem_Session::RequireUnchanged(sql_Store& store) const
{
    const std::unique_ptr<cls_MementoRead> root(store.OpenRoot(ROOT));
    // It may also have replaced everything, by what was saved as often.
    if (root->GetUidEntry() != m_uid.Entry() || root->ReadInt(SAVES, 0) != m_saves) {
        FailFile(*m_file, "was saved by another session after this one had opened it; open it again", __LINE__);
    }
}

void fem_Session::Read(std::unique_ptr<fem_ModelFile> file)
{
    sql_Store& store = file->Store();
    fem_Repository<cow_String, fem_Model> models(*this, "models"); // goes before its file
    cls_Uid uid = m_uid;
    int saves = 0;
    store.Read([&] {
        const std::vector<cow_String> roots = store.Roots();
        if (std::ranges::find(roots, cow_String(ROOT)) == roots.end()) {
            FailFile(*file,
                     "holds no models: the save that made it did not come to its end, or another program made it",
                     __LINE__);
        }
        if (store.RootClass(ROOT) != CLASS_ID) {
            FailFile(*file, "has a session that this program cannot read", __LINE__);
        }
        const cls_ReadVisitor visitor(store.OpenRoot(ROOT));
        uid = visitor.GetUid();
        saves = visitor.Memento()->ReadInt(SAVES, 0);
        models.DBRead(cls_ReadVisitor(visitor, MODELS), [this](const cow_String& key, const cls_ReadVisitor& stored) {
            return std::make_unique<fem_Model>(*this, key, stored);
        });
    });
    m_models.Swap(models);
    std::swap(m_file, file);
    m_uid = uid;
    m_saves = saves;
}
