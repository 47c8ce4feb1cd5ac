#include "omu_DictIntObjABC.h"

#include "nex_TextException.h"
#include "omu_Arguments.h"
#include "omu_PrimEnumBase.h"
#include "omu_PrimList.h"
#include "omu_PrimNumber.h"
#include "omu_PrimString.h"
#include "omu_PrimVisitor.h"
#include "omu_TextLimits_detail.h"
#include "omu_Text_detail.h"

#include <memory>

namespace
{

std::string TextOf(int key)
{
    return std::to_string(key);
}

std::string TextOf(const cow_String& key)
{
    std::string text;
    omu_AppendQuoted(text, key);
    return text;
}

std::string TextOf(const omu_PrimEnumBase& key)
{
    return std::string(key.GetString().view());
}

void Visit(omu_PrimVisitor& visitor, const omu_DictIntObjABC<int>& repository)
{
    visitor.VisitIntRepository(repository);
}

void Visit(omu_PrimVisitor& visitor, const omu_DictIntObjABC<cow_String>& repository)
{
    visitor.VisitStringRepository(repository);
}

void Visit(omu_PrimVisitor& visitor, const omu_DictIntObjABC<omu_PrimEnumBase>& repository)
{
    visitor.VisitEnumRepository(repository);
}

[[noreturn]] void ThrowNotShown(const std::string& key, const omu_Primitive* element, const nex_Exception& cause)
{
    const cow_String type = element != nullptr ? element->TypeString() : cow_String("unknown type");
    nex_TextException("dictionary object: the element of key " + cow_String(key) + ", " + type +
                      ", cannot be shown: " + cause.UserReport())
        .Throw("source/omu/impl/omu_DictIntObjABC", __LINE__);
}

/// A list of `make(key)` for each key.
template <class K, class Make> omu_PrimList* ListOf(const cow_List<K>& keys, Make make)
{
    auto list = std::make_unique<omu_PrimList>(keys.Length());
    for (const K& key : keys) {
        make(*list, key);
    }
    return list.release();
}

void ExpectNoArguments(omu_Arguments& arguments, const char* methodName)
{
    arguments.Begin();
    arguments.End(methodName);
}

} // namespace

template <class K> omu_DictIntObjABC<K>::omu_DictIntObjABC() : omu_DictIntObjABC(omu_NO_OPERATION_RULES) {}

template <class K>
omu_DictIntObjABC<K>::omu_DictIntObjABC(omu_OperationRules rules) : omu_InterfaceObj(rules, omu_NO_PYTHON_TYPE)
{
    static constexpr methodTable methods[] = {
        {"keys", "keys() -> list[Any]: the keys.", omu_AsMethod<&omu_DictIntObjABC::MyKeys>},
        {"items", "items() -> list[tuple[Any, Any]]: pairs of key and object.",
         omu_AsMethod<&omu_DictIntObjABC::MyItems>},
        {"values", "values() -> list[Any]: the objects.", omu_AsMethod<&omu_DictIntObjABC::MyVals>},
        {"changeKey", "changeKey(fromName: Any, toName: Any): gives the object under the one key the other.",
         omu_AsMethod<&omu_DictIntObjABC::MyChangeKey>},
        {"has_key", "has_key(key: Any) -> int: 1 when there is such a key.",
         omu_AsMethod<&omu_DictIntObjABC::MyHasKey>},
        {"summary", "summary(): how to learn what is in it.", omu_AsMethod<&omu_DictIntObjABC::MySummary>},
        {},
    };
    DescribeType("Repository", methods, nullptr);
}

template <class K> cow_String omu_DictIntObjABC<K>::AsString(int depth) const
{
    if (omu_IsCutOff(depth)) {
        return omi_Singleton<omu_TextRepr>::Instance().GetMaxRecursionString(this);
    }
    const cow_List<K> keys = KeyList();
    std::string text("{");
    omu_AppendElements(text, keys.Length(), [&](int i) {
        const std::string key = TextOf(keys[i]);
        text += key + ": ";
        std::unique_ptr<omu_Primitive> value;
        try {
            value.reset(Value(keys[i]));
            omu_AppendElement(text, value.get(), depth + 1);
        } catch (const nex_Exception& error) {
            ThrowNotShown(key, value.get(), error);
        }
    });
    text += '}';
    return std::string_view(text);
}

template <class K> cow_String omu_DictIntObjABC<K>::Repr() const
{
    return omu_InterfaceObj::AsString(0);
}

template <class K> cow_String omu_DictIntObjABC<K>::FullRepr() const
{
    return AsString(0);
}

template <class K> void omu_DictIntObjABC<K>::Accept(omu_PrimVisitor* visitor) const
{
    Visit(*visitor, *this);
}

template <class K> bool omu_DictIntObjABC<K>::SetValue(const K&, const omu_Primitive&)
{
    return false;
}

template <class K> bool omu_DictIntObjABC<K>::Remove(const K&)
{
    return false;
}

template <class K> omu_PrimList* omu_DictIntObjABC<K>::Values() const
{
    return ListOf(KeyList(), [&](omu_PrimList& list, const K& key) { list.Put(Value(key)); });
}

template <class K> bool omu_DictIntObjABC<K>::HasKey(const K& key) const
{
    return KeyList().IsMember(key);
}

template <class K> omu_PrimList* omu_DictIntObjABC<K>::Items() const
{
    return ListOf(KeyList(), [&](omu_PrimList& list, const K& key) {
        auto pair = std::make_unique<omu_PrimTuple>(2);
        pair->Put(key);
        pair->Put(Value(key));
        list.Put(pair.release());
    });
}

template <class K> omu_Primitive* omu_DictIntObjABC<K>::ChangeKey(const K&, const K&)
{
    return new omu_PrimString("ChangeKey NOT IMPLEMENTED");
}

template <class K> omu_Primitive* omu_DictIntObjABC<K>::Summary() const
{
    return new omu_PrimString(KeyList().IsEmpty() ? "Summary NOT IMPLEMENTED" : "UseKey");
}

template <class K> omu_Primitive* omu_DictIntObjABC<K>::MyKeys(omu_Arguments& arguments)
{
    ExpectNoArguments(arguments, "keys");
    return ListOf(KeyList(), [](omu_PrimList& list, const K& key) { list.Put(key); });
}

template <class K> omu_Primitive* omu_DictIntObjABC<K>::MyItems(omu_Arguments& arguments)
{
    ExpectNoArguments(arguments, "items");
    return Items();
}

template <class K> omu_Primitive* omu_DictIntObjABC<K>::MyVals(omu_Arguments& arguments)
{
    ExpectNoArguments(arguments, "values");
    return Values();
}

template <class K> omu_Primitive* omu_DictIntObjABC<K>::MyChangeKey(omu_Arguments& arguments)
{
    K from{};
    K to{};
    arguments.Begin();
    arguments.Get(from, "fromName");
    arguments.Get(to, "toName");
    arguments.End("changeKey");
    return ChangeKey(from, to);
}

template <class K> omu_Primitive* omu_DictIntObjABC<K>::MyHasKey(omu_Arguments& arguments)
{
    K key{};
    arguments.Begin();
    arguments.Get(key, "key");
    arguments.End("has_key");
    return new omu_PrimNumber(HasKey(key) ? 1 : 0);
}

template <class K> omu_Primitive* omu_DictIntObjABC<K>::MySummary(omu_Arguments& arguments)
{
    ExpectNoArguments(arguments, "summary");
    return Summary();
}

template <class K> cow_List<K> omu_DictIntObjABC<K>::KeyList() const
{
    cow_List<K> keys;
    Keys(keys);
    return keys;
}

template class omu_DictIntObjABC<int>;
template class omu_DictIntObjABC<cow_String>;
template class omu_DictIntObjABC<omu_PrimEnumBase>;
