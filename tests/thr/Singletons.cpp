#include "Test.h"
#include "thr_Module.h"
#include "thr_ThreadSingleton.h"

namespace
{
class Singletons : public testing::Test
{
protected:
    Singletons() { thr_initialize(m_count); }
    ~Singletons() override
    {
        thr_finalize(m_count);
        EXPECT_EQ(m_count, 0);
        EXPECT_EQ(m_reports.Take(), Texts());
    }

    RecordedAssertions m_reports; // of one thread at a time
    int m_count = 0;
};

bool isConstructorFailing = false;
int alive = 0;

struct Process : omi_SingletonBase<Process>
{
    Process() { isConstructorFailing ? throw std::runtime_error("constructor") : ++alive; }
    ~Process() { --alive; }
};

std::string destroyed; // letters of the destroyed instances, in order; of one thread at a time

/// A per-thread class at a level (below zero: at none), known by its letter.
template <char LETTER, int LEVEL> class Leveled : public thr_ThreadSingletonBase<Leveled<LETTER, LEVEL>>
{
public:
    using Base = thr_ThreadSingletonBase<Leveled>;
    using Base::instanceTlsIndex;
    using Base::refCount;

    Leveled() : m_thread(std::this_thread::get_id())
    {
        if (isConstructorFailing) {
            throw std::runtime_error("constructor");
        }
        if (LEVEL >= 0) { // given for either of the two functions a class has
            thr_GlobalSingleton<thr_ThrSingletonRegistry>::Instance().SetDestructLevel(
                LEVEL % 2 ? &Base::Finalize : &Finalize, thr_ThreadObjectDestructLevel{LEVEL});
        }
    }
    ~Leveled()
    {
        EXPECT_EQ(m_thread, std::this_thread::get_id());
        destroyed += LETTER;
        if (onDestruction) {
            onDestruction();
        }
    }

    static inline void (*onDestruction)() = nullptr;

private:
    static int Finalize() { return Base::Finalize(); }

    const std::thread::id m_thread;
};

template <class T> T& Here()
{
    return thr_ThreadSingleton<T>::Instance();
}

using Uids = Leveled<'a', 2>;
using Extents = Leveled<'b', 3>;
using Redirections = Leveled<'c', 16>;
using Formats = Leveled<'d', 17>;
using Messages = Leveled<'e', 18>;
using Plain = Leveled<'z', -1>;

std::string DestroyedBy(void (*body)())
{
    destroyed.clear();
    std::thread(body).join();
    return destroyed;
}
} // namespace

TEST_F(Singletons, A_process_instance_is_made_anew_after_it_went_or_its_constructor_threw)
{
    for (int round = 0; round < 2; ++round) {
        isConstructorFailing = true;
        EXPECT_THROW(omi_Singleton<Process>::Instance(), std::runtime_error);
        EXPECT_THROW(Here<Plain>(), std::runtime_error);
        isConstructorFailing = false;
        EXPECT_TRUE(Plain::refCount == 0 && Plain::instanceTlsIndex == TLS_OUT_OF_INDEXES);
        EXPECT_EQ(omi_SingletonBase<Process>::Instance(), nullptr);
        omi_SingletonBase<Process>::Finalize();
        EXPECT_EQ(&omi_Singleton<Process>::Instance(), &omi_Singleton<Process>::Instance());
        EXPECT_EQ(alive, 1);
        omi_SingletonBase<Process>::Finalize();
        EXPECT_EQ(alive, 0);
    }
}

TEST_F(Singletons, A_second_instance_is_reported_and_is_the_one_given_out)
{
    Process* const first = &omi_Singleton<Process>::Instance();
    Process* const second = new Process;
    delete first;
    EXPECT_EQ(&omi_Singleton<Process>::Instance(), second);
    omi_SingletonBase<Process>::Finalize();

    auto* const firstHere = &Here<Plain>();
    auto* const secondHere = new Plain;
    EXPECT_EQ(Plain::refCount, 2);
    delete firstHere;
    EXPECT_EQ(&Here<Plain>(), secondHere);
    EXPECT_TRUE(Plain::Base::Finalize() == 1 && Plain::refCount == 0);
    EXPECT_EQ(m_reports.Take(), (Texts{"instance == 0", "TlsGetValue(instanceTlsIndex) == NULL"}));
    EXPECT_EQ(m_reports.Places(),
              (Texts{"source/include/omi_SingletonBase 19", "source/include/thr_ThreadSingletonBase 170"}));
}

TEST_F(Singletons, Threads_have_their_own_instances_and_share_one_index)
{
    Uids& mine = Here<Uids>();
    const std::uint32_t index = Uids::instanceTlsIndex;
    std::thread([&] {
        EXPECT_EQ(Uids::Base::Finalize(), 0);
        EXPECT_NE(&Here<Uids>(), &mine);
        EXPECT_EQ(&Here<Uids>(), &Here<Uids>());
        EXPECT_TRUE(Uids::refCount == 2 && Uids::instanceTlsIndex == index);
        EXPECT_EQ(Uids::Base::Finalize(), 1);
        EXPECT_EQ(Uids::Base::Finalize(), 0);
    }).join();
    EXPECT_EQ(&Here<Uids>(), &mine);
    EXPECT_EQ(Uids::Base::Finalize(), 1);
    EXPECT_TRUE(Uids::refCount == 0 && Uids::instanceTlsIndex == TLS_OUT_OF_INDEXES);
}

TEST_F(Singletons, A_thread_that_ends_destroys_its_instances_from_the_highest_level_down)
{
    Here<Messages>();
    const auto useAll = [] {
        Here<Uids>(), Here<Plain>(), Here<Messages>(), Here<Redirections>(), Here<Extents>(), Here<Formats>();
    };
    EXPECT_EQ(DestroyedBy(useAll), "edcbaz");
    EXPECT_EQ(Messages::refCount, 1) << "the instance of this thread stays";
}

TEST_F(Singletons, What_a_destruction_makes_anew_is_destroyed_too)
{
    Uids::onDestruction = [] { Here<Formats>(); };
    EXPECT_EQ(DestroyedBy([] { Here<Uids>(), Here<Formats>(); }), "dad");

    static const Texts& places = m_reports.Places();
    Formats::onDestruction = [] { places.empty() ? void(Here<Uids>()) : void(); };
    DestroyedBy([] { Here<Uids>(), Here<Formats>(); });
    Uids::onDestruction = Formats::onDestruction = nullptr;
    EXPECT_EQ(m_reports.Take().size(), 1u) << "instances that make each other without end are an error";
    EXPECT_EQ(Uids::refCount + Formats::refCount, 0) << "once it is reported, the rest goes too";
}

TEST_F(Singletons, The_last_finalisation_destroys_the_instances_of_its_thread)
{
    destroyed.clear();
    Here<Uids>(), Here<Messages>();
    int count = 7;
    thr_initialize(count);
    thr_finalize(count);
    EXPECT_EQ(count, 7) << "only the first and the last call count for their caller";
    EXPECT_EQ(destroyed, "");
    thr_finalize(m_count);
    EXPECT_EQ(destroyed, "ea");
    thr_finalize(m_count);
    EXPECT_EQ(m_count, 0) << "a call too many changes nothing";
    thr_initialize(m_count);
    EXPECT_EQ(m_count, 1);
}

TEST_F(Singletons, Without_a_free_slot_an_instance_works_but_is_reported)
{
    std::vector<std::uint32_t> indexes;
    for (std::uint32_t index = 0; (index = VEXCRT::TlsAlloc()) != TLS_OUT_OF_INDEXES;) {
        indexes.push_back(index);
    }
    delete &Here<Plain>();
    for (const std::uint32_t index : indexes) {
        VEXCRT::TlsFree(index);
    }
    EXPECT_EQ(m_reports.Take(),
              (Texts{"TlsSetValue(instanceTlsIndex, this)", "instance == thr_ThreadSingletonBase<Class>::Instance()"}));
    EXPECT_EQ(m_reports.Places().back(), "source/include/thr_ThreadSingleton 26");
    EXPECT_EQ(&Here<Plain>(), &Here<Plain>());
}

TEST_F(Singletons, Threads_that_start_and_end_at_once_do_not_disturb_each_other)
{
    EXPECT_NE(omi_SingletonBase<thr_GlobalLock>::Instance(), nullptr) << "this program has a lock of its own";
    struct Counter : thr_ThreadSingletonBase<Counter>
    {
        int value = 0;
    };
    int total = 0;
    const auto count = [&total] {
        for (int i = 0; i < 10; ++i) {
            ASSERT_EQ(++Here<Counter>().value, 1);
            ASSERT_EQ(thr_ThreadSingletonBase<Counter>::Finalize(), 1);
            const thr_GlobalLock::Holder outer, inner;
            ++total;
        }
        Here<Counter>();
    };
    for (int round = 0; round < 100; ++round) {
        std::thread first(count), second(count);
        first.join();
        second.join();
    }
    EXPECT_EQ(total, 2000);
}

TEST(SingletonsDeathTest, The_end_of_the_process_may_still_use_them)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto useAtExit = [] {
        std::atexit([] {
            Here<Uids>();
            std::fputs(DestroyedBy([] { Here<Messages>(), Here<Uids>(); }).c_str(), stderr);
        });
        int count = 0;
        thr_initialize(count);
        thr_finalize(count);
        std::exit(0);
    };
    EXPECT_EXIT(useAtExit(), testing::ExitedWithCode(0), "ea");
}
