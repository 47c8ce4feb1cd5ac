#pragma once

#include "MementoDouble.h"
#include "cls_ArrayPrim.h"

/// A stored list of numbers and what its agents were called for; the n-th call fails when it is told to.
struct FakeList
{
    std::vector<int> values;
    Texts log;
    std::string failedAtCommit;
    bool isChanged = false;
    bool isReadOnly = false;
    bool isLeft = false; // by the last array: what fails then is thrown by the commit
    int failAt = 0;      // counts down; 0 is never
    int attached = 0;

    Texts TakeLog() { return std::exchange(log, {}); }
    void Note(const std::string& call)
    {
        log.push_back(call);
        if (failAt != 0 && --failAt == 0) {
            failedAtCommit = call;
            if (!isLeft) {
                throw std::runtime_error(call);
            }
        }
    }
};

class FakeAgent final : public cls_AgentListPrim<int>
{
public:
    explicit FakeAgent(FakeList& list) : m_list(list) { m_list.isLeft = false; }
    ~FakeAgent() override { m_list.log.emplace_back("gone"); }

    int Size() override
    {
        m_list.Note("size");
        return static_cast<int>(m_list.values.size());
    }
    bool IsChanged() override
    {
        m_list.Note("changed");
        return std::exchange(m_list.isChanged, false);
    }
    void EndWrite() override { m_list.Note("end"); }
    void WriteRange(int first, int count, const int* values) override
    {
        EXPECT_GT(count, 0);
        m_list.Note("write " + std::to_string(first) + "+" + std::to_string(count));
        const auto from = static_cast<std::size_t>(first);
        m_list.values.resize(std::max(m_list.values.size(), from + static_cast<std::size_t>(count)));
        std::copy_n(values, count, m_list.values.begin() + first);
    }
    void ReadRange(int first, int count, int* values) override
    {
        m_list.Note("read " + std::to_string(first) + "+" + std::to_string(count));
        std::copy_n(m_list.values.begin() + first, count, values);
    }
    void Attach() override
    {
        m_list.Note("attach");
        ++m_list.attached;
    }
    void Detach(cls_ArrayPrim<int>& array) noexcept override
    {
        m_list.log.emplace_back("detach");
        m_arrays.erase(&array);
        m_list.isLeft = m_arrays.empty();
        --m_list.attached;
        try {
            array.Flush();
        } catch (const std::exception&) {
            m_list.log.emplace_back("kept");
        }
    }
    bool IsOwnedElsewhere() noexcept override
    {
        m_list.log.emplace_back("owned");
        return !m_arrays.empty();
    }
    bool IsReadOnly() override
    {
        m_list.Note("readonly");
        return m_list.isReadOnly;
    }
    void Register(cls_ArrayPrim<int>& array) noexcept override
    {
        m_list.log.emplace_back("register");
        m_arrays.insert(&array);
    }

private:
    FakeList& m_list;
    std::set<cls_ArrayPrim<int>*> m_arrays;
};

/// A record that is a list of numbers, for reading and for writing.
template <class Base> class FakeListRecord : public Base
{
public:
    explicit FakeListRecord(FakeList& list) : m_list(list) {}
    cls_AgentListPrim<int>* MakeIntListAgent() override
    {
        m_list.Note("agent");
        return new FakeAgent(m_list);
    }

private:
    FakeList& m_list;
};
