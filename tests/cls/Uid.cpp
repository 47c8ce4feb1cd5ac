#include "RecordedAssertions.h"
#include "cls_Uid.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace
{
std::string deleted;

struct History : cls_HistoryEntry
{
    History(const cls_Uid& uid, char id, bool unlinks = true) : m_id(id), m_unlinks(unlinks)
    {
        Link(&uid.Entry()->History());
    }
    ~History() override
    {
        deleted += m_id;
        if (m_unlinks) {
            UnLink();
        }
    }

private:
    char m_id;
    bool m_unlinks;
};

class Uid : public testing::Test
{
protected:
    Uid() { deleted.clear(); }
    ~Uid() override { EXPECT_EQ(m_assertions.Take(), std::vector<std::string>{}); }

    RecordedAssertions m_assertions;
};

TEST_F(Uid, Entries_are_used_again_last_in_first_out)
{
    std::vector<cls_UidCatalogEntry*> entries;
    {
        std::vector<cls_Uid> uids;
        for (int i = 0; i < 5; ++i) {
            uids.push_back(cls_Uid::AllocateUid());
        }
        while (!uids.empty()) {
            entries.push_back(uids.back().Entry());
            uids.pop_back();
        }
    }
    std::vector<cls_Uid> again;
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        again.push_back(cls_Uid::AllocateUid());
        EXPECT_EQ(again.back().Entry(), *entry);
    }
}

TEST_F(Uid, Assignment_moves_one_count_and_to_itself_changes_nothing)
{
    cls_Uid a = cls_Uid::AllocateUid();
    cls_Uid b = cls_Uid::AllocateUid();
    new History(a, 'a');
    const cls_Uid& self = a;
    a = self;
    EXPECT_EQ(a.Entry()->GetRefCnt(), 1);
    EXPECT_EQ(deleted, "");
    a = b;
    EXPECT_EQ(deleted, "a");
    EXPECT_EQ(b.Entry()->GetRefCnt(), 2);
    a = b; // two handles on one entry
    EXPECT_EQ(b.Entry()->GetRefCnt(), 2);
}

TEST_F(Uid, The_history_goes_with_the_last_handle_in_ring_order)
{
    auto uid = std::make_unique<cls_Uid>(cls_Uid::AllocateUid());
    auto copy = std::make_unique<cls_Uid>(*uid);
    new History(*uid, 'a');
    new History(*uid, 'b');
    delete new History(*uid, 'x');
    new History(*copy, 'c');
    uid.reset();
    EXPECT_EQ(deleted, "x");
    copy.reset();
    EXPECT_EQ(deleted, "xabc");
}

TEST_F(Uid, NewUid_frees_the_entry_of_a_sole_handle_and_leaves_a_shared_one)
{
    cls_Uid sole = cls_Uid::AllocateUid();
    cls_UidCatalogEntry* const entry = sole.Entry();
    new History(sole, 's');
    sole.NewUid();
    EXPECT_EQ(deleted, "s");
    EXPECT_EQ(sole.Entry(), entry);
    EXPECT_EQ(entry->GetRefCnt(), 1);
    EXPECT_EQ(entry->History().Next(), &entry->History());

    const cls_Uid other(sole);
    new History(other, 'o');
    sole.NewUid();
    EXPECT_EQ(deleted, "s");
    EXPECT_NE(sole, other);
    EXPECT_EQ(other.Entry()->GetRefCnt(), 1);
}

TEST_F(Uid, A_history_entry_that_stays_linked_is_reported_and_not_deleted_again)
{
    cls_Uid uid = cls_Uid::AllocateUid();
    new History(uid, 'a', /*unlinks=*/false);
    uid.NewUid();
    EXPECT_EQ(uid.Entry()->History().Next(), &uid.Entry()->History());
    EXPECT_EQ(deleted, "a");
    EXPECT_EQ(m_assertions.Take(), std::vector<std::string>{"a history entry unlinks itself in its destructor"});
}
} // namespace
