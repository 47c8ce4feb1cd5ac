#pragma once

#include "fem_Stored.h"

#include "cls_CollectionReaders.h"
#include "cls_CollectionRequests.h"
#include "cls_CollectionWriters.h"
#include "cls_MementoRead.h"
#include "cls_MementoWrite.h"
#include "cls_ReadVisitor.h"
#include "cls_Uid.h"
#include "cls_WriteVisitor.h"
#include "omu_BrenowName.h"
#include "omu_DictIntObjABC.h"
#include "omu_KeyErrorException.h"
#include "omu_ObjectRef.h"
#include "omu_PrimEnumBase.h"
#include "omu_PrimNone.h"
#include "omu_ValueErrorException.h"

#include <map>
#include <memory>
#include <type_traits>
#include <utility>

/// A journal holds what changes the model; asking a repository does not.
inline void fem_KeepQueriesOutOfJournal(omu_InterfaceObj& repository)
{
    for (const char* const query : {"keys", "items", "values", "has_key", "summary"}) {
        repository.DoNotJournal(query);
    }
}

/// The objects of class T that an object owns, by name; scripts reach them through a member of the owner and see a
/// mapping whose keys are names, or symbolic constants when K is omu_PrimEnumBase.
///
/// Ownership:  owns its objects; a member of its owner.
/// Complexity: O(log objects); Keys O(objects).
/// Errors:     omu_KeyErrorException for a name that is not there, omu_ValueErrorException for one that is taken.
/// References: an object stays where it is until it is deleted; scripts' references notice that.
template <class K, class T> class fem_Repository final : public omu_DictIntObjABC<K>
{
public:
    fem_Repository(const omu_InterfaceObj& owner, const char* member) : m_owner(owner), m_member(member)
    {
        fem_KeepQueriesOutOfJournal(*this);
    }

    /// Null: it stays the one of its owner.
    omu_Primitive* Copy() const override { return nullptr; }
    /// The path that leads to it.
    cow_String Repr() const override { return m_owner.Repr() + "." + m_member; }

    int Length() const override { return static_cast<int>(m_objects.size()); }
    bool HasKey(const K& key) const override { return Find(NameOf(key)) != nullptr; }
    omu_Primitive* Value(const K& key) const override
    {
        T* const object = Find(NameOf(key));
        return object != nullptr ? new omu_ObjectRef(*object) : nullptr;
    }
    void Keys(cow_List<K>& keys) const override
    {
        for (const auto& [name, object] : m_objects) {
            keys.Append(K(name));
        }
    }
    omu_Primitive* ChangeKey(const K& from, const K& to) override
    {
        if constexpr (std::is_same_v<K, cow_String>) {
            const cow_String name = omu_BrenowName(to, T::NAME_RULES).AsString();
            T& object = Get(from);
            if (name != from) {
                RequireNew(name);
                auto entry = m_objects.extract(from);
                entry.key() = name;
                object.SetName(name);
                m_objects.insert(std::move(entry));
            }
            return new omu_PrimNone;
        } else {
            return omu_DictIntObjABC<K>::ChangeKey(from, to); // a constant is no name that a user chose
        }
    }

    // What the kernel does; `name` may also be that of a constant.
    /// Null when there is none.
    T* Find(const cow_String& name) const
    {
        const auto found = m_objects.find(name);
        return found != m_objects.end() ? found->second.get() : nullptr;
    }
    T& Get(const cow_String& name) const
    {
        T* const object = Find(name);
        if (object == nullptr) {
            omu_KeyErrorException(Repr() + " has no '" + name + "'").Throw(SOURCE, __LINE__);
        }
        return *object;
    }
    void RequireNew(const cow_String& name) const
    {
        if (Find(name) != nullptr) {
            omu_ValueErrorException(Repr() + " has '" + name + "' already").Throw(SOURCE, __LINE__);
        }
    }
    /// Adds an object with a new name.
    T& Add(std::unique_ptr<T> object)
    {
        RequireNew(object->Name());
        return *m_objects.try_emplace(object->Name(), std::move(object)).first->second;
    }
    void Delete(const cow_String& name)
    {
        Get(name);
        m_objects.erase(name);
    }
    /// Exchanges the objects with those of a repository of the same owner.
    void Swap(fem_Repository& other) noexcept
    {
        std::swap(m_objects, other.m_objects);
        std::swap(m_uid, other.m_uid);
    }

    void DBWrite(const cls_WriteVisitor& visitor, fem_Save& save) const
    {
        if (visitor.StartWrite(fem_REPOSITORY, m_uid) != 0) {
            visitor.CheckCollectionType(cls_COLLECTION_STRING_KEYED);
            const std::unique_ptr<cls_WriteMapString2Obj> map(
                visitor.Memento()->MakeStringMapObjWriter(cls_WriteVisitor::NO_ELEMENT));
            for (const auto& [name, object] : m_objects) {
                object->DBWrite(cls_WriteVisitor(cls_WriteRequestMapString2Obj(map.get(), name)), save);
            }
        }
    }
    /// Adds the stored objects, none when there is no record; `make(name, visitor)` builds one.
    template <class F> void DBRead(const cls_ReadVisitor& visitor, F make)
    {
        if (visitor.Memento() == nullptr) {
            return;
        }
        m_uid = visitor.GetUid();
        const std::unique_ptr<cls_ReadMapString2Obj> map(
            visitor.Memento()->MakeStringMapObjReader(cls_WriteVisitor::NO_ELEMENT));
        while (map != nullptr && map->Next()) {
            if (map->ClassId() == T::CLASS_ID) { // the store keeps those that this program does not know
                Add(make(map->Key(), cls_ReadVisitor(map->MakeReader())));
            }
        }
    }

    /// After a rollback: what an object had moved to the file since the last save is lost, and it is as it was then.
    void Restore() const
    {
        for (const auto& [name, object] : m_objects) {
            object->Restore();
        }
    }

    /// Pairs of name and object for iteration, in the order of the names.
    const std::map<cow_String, std::unique_ptr<T>>& Objects() const noexcept { return m_objects; }

private:
    static constexpr const char* SOURCE = "examples/fem/impl/fem_Repository";

    static const cow_String& NameOf(const cow_String& key) { return key; }
    static const cow_String& NameOf(const omu_PrimEnumBase& key) { return key.GetString(); }

    const omu_InterfaceObj& m_owner;
    const char* m_member;
    std::map<cow_String, std::unique_ptr<T>> m_objects;
    cls_Uid m_uid = cls_Uid::AllocateUid();
};
