#include "Test.h"
#include "cls_Uid.h"
#include "cls_UidCatalog.h"
#include "cls_UidCatalogEntryGroup.h"
#include "thr_Module.h"

#include <atomic>
#include <mutex>

namespace
{
std::atomic<int> reports;
std::atomic<int> histories; // alive

struct History : cls_HistoryEntry
{
    explicit History(const cls_Uid& uid, std::thread::id* deletedBy = nullptr)
        : m_entry(uid.Entry()), m_deletedBy(deletedBy)
    {
        Link(&uid.Entry()->History());
        ++histories;
    }
    ~History() override
    {
        UnLink();
        const cls_Uid onTheDyingEntry(m_entry);
        --histories;
        if (m_deletedBy != nullptr) {
            *m_deletedBy = std::this_thread::get_id();
        }
    }

private:
    cls_UidCatalogEntry* m_entry;
    std::thread::id* m_deletedBy;
};

class UidThreads : public testing::Test
{
protected:
    UidThreads()
    {
        thr_initialize(m_count);
        reports = 0;
        histories = 0;
        m_former = VEXCRT::SetAssertHandler([](const char*, const char*, int) { ++reports; });
    }
    ~UidThreads() override
    {
        EXPECT_EQ(histories, 0);
        EXPECT_EQ(cls_UidCatalog::CountOrphanedGroups(), 0);
        VEXCRT::SetAssertHandler(m_former);
        thr_finalize(m_count);
    }

private:
    int m_count = 0;
    VEXCRT::AssertHandler m_former;
};

template <class F> void OnAnotherThread(F work)
{
    std::thread(work).join();
}

const cls_UidCatalogEntryGroup* GroupOf(const cls_Uid& uid)
{
    return &cls_UidCatalogEntryGroup::Of(uid.Entry());
}

TEST_F(UidThreads, The_2049th_uid_of_a_thread_stands_in_a_second_group)
{
    OnAnotherThread([] {
        std::vector<cls_Uid> uids;
        for (int i = 0; i < 2049; ++i) {
            uids.push_back(cls_Uid::AllocateUid());
            EXPECT_EQ(GroupOf(uids[static_cast<std::size_t>(i)]) == GroupOf(uids[0]), i < 2048) << i;
        }
        for (std::size_t i = 1; i < 2048; ++i) {
            ASSERT_EQ(uids[i].Entry(), uids[0].Entry() + i);
        }
    });
    EXPECT_EQ(reports, 0);
}

TEST_F(UidThreads, A_foreign_release_is_reported_and_left_to_the_owner)
{
    std::thread::id deletedBy;
    auto uid = std::make_unique<cls_Uid>(cls_Uid::AllocateUid());
    const cls_UidCatalogEntry* const entry = uid->Entry();
    new History(*uid, &deletedBy);
    OnAnotherThread([&] {
        const cls_Uid& self = *uid;
        *uid = self; // drops nothing
        EXPECT_EQ(reports, 0);
        const cls_Uid copy(self);
    });
    EXPECT_EQ(reports, 1);
    EXPECT_EQ(histories, 1);
    EXPECT_EQ(entry->GetRefCnt(), 1);

    OnAnotherThread([&] { uid.reset(); });
    EXPECT_EQ(reports, 2);
    EXPECT_EQ(histories, 1);
    EXPECT_EQ(cls_Uid::AllocateUid().Entry(), entry);
    EXPECT_EQ(histories, 0);
    EXPECT_EQ(deletedBy, std::this_thread::get_id());
}

TEST_F(UidThreads, A_catalogue_that_ends_takes_back_what_other_threads_dropped)
{
    std::thread::id deletedBy;
    std::thread::id owner;
    OnAnotherThread([&] {
        owner = std::this_thread::get_id();
        auto uid = std::make_unique<cls_Uid>(cls_Uid::AllocateUid());
        new History(*uid, &deletedBy);
        OnAnotherThread([&] { uid.reset(); });
        EXPECT_EQ(histories, 1);
    });
    EXPECT_EQ(reports, 1);
    EXPECT_EQ(deletedBy, owner);
}

TEST_F(UidThreads, Uids_outlive_the_thread_that_made_them)
{
    std::vector<cls_Uid> survivors;
    OnAnotherThread([&] {
        std::vector<cls_Uid> all;
        for (int i = 0; i < 3 * 2048; ++i) {
            all.push_back(cls_Uid::AllocateUid());
            new History(all.back());
        }
        survivors = {all[0], all[1], all[2 * 2048]}; // the middle group has none
    });
    EXPECT_EQ(histories, 3);
    EXPECT_EQ(cls_UidCatalog::CountOrphanedGroups(), 2);
    cls_Uid copy(survivors[0]);
    EXPECT_EQ(copy.Entry()->GetRefCnt(), 2);
    survivors.erase(survivors.begin());
    EXPECT_EQ(histories, 3);
    copy.NewUid(); // its entry belongs to nobody any more: the new one is this thread's
    EXPECT_EQ(histories, 2);
    EXPECT_NE(GroupOf(copy), GroupOf(survivors[0]));
    OnAnotherThread([&] { survivors.clear(); });
    EXPECT_EQ(histories, 0);
    EXPECT_EQ(reports, 0);
}

TEST_F(UidThreads, Threads_that_come_and_go_may_exchange_uids)
{
    std::mutex mutex;
    std::vector<std::optional<cls_Uid>> exchange(64);
    const auto work = [&](unsigned int seed) {
        std::mt19937 random(seed);
        std::vector<cls_Uid> own;
        for (int i = 0; i < 3000; ++i) {
            std::optional<cls_Uid> uid(cls_Uid::AllocateUid());
            EXPECT_EQ(uid->Entry()->GetRefCnt(), 1); // an entry freed twice or too early would be in use already
            EXPECT_EQ(uid->Entry()->History().Next(), &uid->Entry()->History());
            new History(*uid);
            if (random() % 2 == 0) {
                own.push_back(*uid);
            }
            {
                const std::lock_guard guard(mutex);
                exchange[random() % 64].swap(uid);
            }
            if (uid && random() % 2 == 0) {
                own.push_back(*uid);
            }
            if (own.size() > 200) {
                own.resize(100, own[0]);
            }
        }
    };
    for (unsigned int round = 0; round < 4; ++round) {
        std::vector<std::thread> threads;
        for (unsigned int i = 0; i < 4; ++i) {
            threads.emplace_back(work, round * 4 + i);
        }
        for (auto& thread : threads) {
            thread.join();
        }
    }
}
} // namespace
