#include "Test.h"
#include "cls_Uid.h"

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
    ~Uid() override { EXPECT_EQ(m_assertions.Take(), Texts{}); }

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

TEST_F(Uid, Random_handles_agree_with_shared_pointers_to_their_history)
{
    std::mt19937 random(6);
    std::vector<cls_Uid> uids;
    std::vector<std::shared_ptr<std::string>> models; // the entries of the history in ring order
    for (int i = 0; i < 6; ++i) {
        uids.push_back(cls_Uid::AllocateUid());
        models.push_back(std::make_shared<std::string>());
    }
    for (int step = 0; step < 5000; ++step) {
        const std::size_t a = random() % 6;
        const std::size_t b = random() % 6;
        std::string lost = models[a].use_count() == 1 ? *models[a] : "";
        deleted.clear();
        if (const auto what = random() % 4; what == 0) {
            const cls_Uid& source = uids[b];
            uids[a] = source;
            lost = a == b ? "" : lost;
            models[a] = models[b];
        } else if (what == 1) {
            uids[a].NewUid();
            models[a] = std::make_shared<std::string>();
        } else {
            const char letter = static_cast<char>('a' + step % 26);
            new History(uids[a], letter);
            delete new History(uids[a], '!');
            *models[a] += letter;
            lost = "!";
        }
        ASSERT_EQ(deleted, lost) << "step " << step;
        for (std::size_t i = 0; i < 6; ++i) {
            const cls_Uid copy(uids[i]);
            ASSERT_EQ(copy.Entry()->GetRefCnt(), models[i].use_count() + 1) << "step " << step;
            ASSERT_EQ(copy == uids[a], models[i] == models[a]) << "step " << step;
        }
    }
}

TEST_F(Uid, A_history_entry_that_stays_linked_is_reported_and_not_deleted_again)
{
    cls_Uid uid = cls_Uid::AllocateUid();
    new History(uid, 'a', /*unlinks=*/false);
    uid.NewUid();
    EXPECT_EQ(uid.Entry()->History().Next(), &uid.Entry()->History());
    EXPECT_EQ(deleted, "a");
    EXPECT_EQ(m_assertions.Take(), Texts{"a history entry unlinks itself in its destructor"});
}
} // namespace
