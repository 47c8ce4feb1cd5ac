#pragma once

#include "cow_List.h"
#include "omu_InterfaceObj.h"

#include <concepts>

class omu_PrimEnumBase;
class omu_PrimList;

template <class K>
concept omu_RepositoryKey = std::same_as<K, int> || std::same_as<K, cow_String> || std::same_as<K, omu_PrimEnumBase>;

/// A repository: kernel objects that scripts find by key. A concrete repository knows the keys and turns each into a
/// value; everything else is here.
///
/// Ownership:  holds nothing; values and lists returned are new and belong to the caller.
/// Threads:    the thread of the kernel objects.
/// Complexity: that of Keys, in every operation but Value, SetValue and Remove; a repository that can tell whether it has
///             a key without listing them all overrides HasKey and Length.
/// Errors:     a script's wrong arguments are those of omu_Arguments; a missing key is a null value here, and a KeyError
///             where a script subscribes.
/// Example:    class PartRepository : public omu_DictIntObjABC<cow_String>; Value(name) { return new omu_ObjectRef(part); }
template <class K> class omu_DictIntObjABC : public omu_InterfaceObj
{
    static_assert(omu_RepositoryKey<K>, "keys are integers, strings or symbolic constants");

public:
    /// As the script language writes a dictionary, in the order of the keys, within the limits of the text settings:
    /// {'wing': 'Part object', ...}. An element whose text cannot be made is named in the exception that says so.
    cow_String AsString(int depth) const override;
    /// "<Repository object>", which a repository that scripts can reach replaces by its path.
    cow_String Repr() const override;
    cow_String FullRepr() const override;
    void Accept(omu_PrimVisitor* visitor) const override;

    // The order of the operations from here on is promised.
    /// How many keys there are.
    virtual int Length() const = 0;
    /// The value object of `key`; null when there is none.
    virtual omu_Primitive* Value(const K& key) const = 0;
    /// Puts `value` under `key`, where a repository lets scripts do so; false here, and nothing changes.
    virtual bool SetValue(const K& key, const omu_Primitive& value);
    /// Removes what is under `key`, where a repository lets scripts do so; false here.
    virtual bool Remove(const K& key);
    /// The value objects in the order of the keys.
    virtual omu_PrimList* Values() const;
    /// Fills an empty list with the keys, in the repository's order.
    virtual void Keys(cow_List<K>& keys) const = 0;
    virtual bool HasKey(const K& key) const;
    /// Pairs (key, value object) in the order of the keys.
    virtual omu_PrimList* Items() const;
    /// Gives what is under `from` the key `to`. Where a repository does not offer it, as here, the result is the text
    /// "ChangeKey NOT IMPLEMENTED".
    virtual omu_Primitive* ChangeKey(const K& from, const K& to);
    /// "UseKey" tells the user to ask by key; without keys it is "Summary NOT IMPLEMENTED". Both are promised.
    virtual omu_Primitive* Summary() const;

protected:
    omu_DictIntObjABC();
    explicit omu_DictIntObjABC(omu_OperationRules rules);
    omu_DictIntObjABC(const omu_DictIntObjABC&) = default;
    omu_DictIntObjABC& operator=(const omu_DictIntObjABC&) = default;

private:
    // What scripts call.
    omu_Primitive* MyKeys(omu_Arguments& arguments);
    omu_Primitive* MyItems(omu_Arguments& arguments);
    omu_Primitive* MyVals(omu_Arguments& arguments);
    omu_Primitive* MyChangeKey(omu_Arguments& arguments);
    omu_Primitive* MyHasKey(omu_Arguments& arguments);
    omu_Primitive* MySummary(omu_Arguments& arguments);

    cow_List<K> KeyList() const;
};

extern template class VEXOMU_API omu_DictIntObjABC<int>;
extern template class VEXOMU_API omu_DictIntObjABC<cow_String>;
extern template class VEXOMU_API omu_DictIntObjABC<omu_PrimEnumBase>;
