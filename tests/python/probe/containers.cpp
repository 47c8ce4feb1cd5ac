#include "objects.h"

#include "omu_DictIntObjABC.h"
#include "omu_ObjectRef.h"
#include "omu_PrimEnumBase.h"
#include "omu_PrimNumber.h"
#include "omu_SeqIntObj.h"

#include <algorithm>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace
{

class Crate final : public omu_InterfaceObj
{
public:
    explicit Crate(int size) : m_size(size)
    {
        static constexpr memberTable members[] = {
            {"size", "Edge length in mm.", omu_AsGetter<&Crate::GetSize>, nullptr},
            {},
        };
        DescribeType("Crate", nullptr, members);
    }
    omu_Primitive* Copy() const override { return new Crate(m_size); }

private:
    omu_Primitive* GetSize() { return new omu_PrimNumber(m_size); }

    int m_size;
};

template <class K> class Rack final : public omu_DictIntObjABC<K>
{
public:
    Rack(const char* path, std::initializer_list<K> keys) : m_path(path)
    {
        for (const K& key : keys) {
            m_crates.emplace_back(key, std::make_unique<Crate>(static_cast<int>(m_crates.size())));
        }
    }
    cow_String Repr() const override { return m_path; }
    omu_Primitive* Copy() const override { return nullptr; }
    int Length() const override { return static_cast<int>(m_crates.size()); }
    omu_Primitive* Value(const K& key) const override
    {
        const auto found = std::find_if(m_crates.begin(), m_crates.end(), HasThis(key));
        return found != m_crates.end() ? new omu_ObjectRef(*found->second) : nullptr;
    }
    bool SetValue(const K& key, const omu_Primitive& value) override
    {
        if (std::same_as<K, omu_PrimEnumBase> || !value.IsType('i')) {
            return false;
        }
        Remove(key);
        m_crates.emplace_back(key, std::make_unique<Crate>(static_cast<const omu_PrimNumber&>(value).GetInt()));
        return true;
    }
    bool Remove(const K& key) override
    {
        return !std::same_as<K, omu_PrimEnumBase> && std::erase_if(m_crates, HasThis(key)) > 0;
    }
    void Keys(cow_List<K>& keys) const override
    {
        for (const auto& [key, crate] : m_crates) {
            keys.Append(key);
        }
    }

private:
    static auto HasThis(const K& key)
    {
        return [&key](const auto& entry) { return entry.first == key; };
    }

    cow_String m_path;
    std::vector<std::pair<K, std::unique_ptr<Crate>>> m_crates;
};

class Row final : public omu_SeqIntObj
{
public:
    explicit Row(cow_1DArray<int> sizes)
    {
        m_ids = std::move(sizes);
        m_length = m_ids.Length();
    }
    omu_Primitive* Copy() const override { return new Row(*this); }
    int Length() const override { return m_length; }
    omu_Primitive* Index(const int& index) const override { return new Crate(m_ids[index]); }
    omu_Primitive* Slice(const int& low, const int& high) const override
    {
        return new Row(cow_1DArray<int>(m_ids.begin() + low, m_ids.begin() + high));
    }
    omu_Primitive* Repeat(const int&) const override { return nullptr; }
    omu_Primitive* Concat(omu_SeqIntObj* other) const override
    {
        cow_1DArray<int> sizes = m_ids;
        for (const int size : static_cast<const Row*>(other)->m_ids) {
            sizes.Append(size);
        }
        return new Row(sizes);
    }
    int Remove(const int& index) override { return RemoveSlice(index, index + 1); }
    int RemoveSlice(const int& low, const int& high) override
    {
        for (int count = high - low; count > 0; --count) {
            m_ids.RemoveAt(low);
        }
        m_length = m_ids.Length();
        return 1;
    }
};

} // namespace

omu_InterfaceObj* NewNameRack()
{
    return new Rack<cow_String>("names", {"a", "b"});
}

omu_InterfaceObj* NewNumberRack()
{
    return new Rack<int>("numbers", {7, -1});
}

omu_InterfaceObj* NewShapeRack()
{
    return new Rack<omu_PrimEnumBase>("shapes", {omu_PrimEnumBase("QUAD")});
}

omu_InterfaceObj* NewRow()
{
    return new Row({0, 1, 2, 3, 4});
}
