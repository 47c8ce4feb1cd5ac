#include "StampedModel.h"

namespace
{
/// The n-th request for memory is refused, whether the program or SQLite makes it.
struct Memory
{
    static inline long failAt = 0; // counts down; 0 is never
    static inline long live = 0;   // blocks that the program has

    static bool Refuses() noexcept { return failAt > 0 && --failAt == 0; }
};

sqlite3_mem_methods system;

/// Before SQLite is first used.
const bool IS_SQLITE_WATCHED = [] {
    sqlite3_config(SQLITE_CONFIG_GETMALLOC, &system);
    sqlite3_mem_methods watched = system;
    watched.xMalloc = [](int bytes) { return Memory::Refuses() ? nullptr : system.xMalloc(bytes); };
    watched.xRealloc = [](void* block, int bytes) {
        return Memory::Refuses() ? nullptr : system.xRealloc(block, bytes);
    };
    return sqlite3_config(SQLITE_CONFIG_MALLOC, &watched) == SQLITE_OK;
}();
} // namespace

// Not inlined: the compiler would see a block of malloc freed by delete.
[[gnu::noinline]] void* operator new(std::size_t bytes)
{
    void* const block = Memory::Refuses() ? nullptr : std::malloc(bytes != 0 ? bytes : 1);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    ++Memory::live;
    return block;
}

[[gnu::noinline]] void operator delete(void* block) noexcept
{
    Memory::live -= block != nullptr ? 1 : 0;
    std::free(block);
}

[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept
{
    operator delete(block);
}

namespace
{
class AllocationFaults : public StoreTest
{
protected:
    /// Runs `work` on the file of the first commit, for n = 1, 2, ... until the n-th request is not reached. After each
    /// the file has to be as it was, or sound with the first commit, or `stamp` where nothing was thrown.
    template <class F> void RefuseEachIn(F work, int stamp)
    {
        Model(1).Save(Create(), BOX);
        const std::string first = Bytes();
        long settled = 0; // blocks in use, once the pools are filled
        int thrown = 0;
        int n = 1;
        for (bool isReached = true; isReached; ++n) {
            SCOPED_TRACE(n);
            Put(first);
            bool hasThrown = false;
            Memory::failAt = n;
            try {
                work();
            } catch (const std::exception&) {
                hasThrown = true;
            }
            isReached = Memory::failAt == 0;
            Memory::failAt = 0;
            thrown += hasThrown;
            if (!hasThrown || Bytes() != first || std::filesystem::exists(Path() + "-journal")) {
                const int found = [&] {
                    sql_Store store = Open(); // rolls a journal back that was left
                    return Model(cls_ReadVisitor(store.OpenRoot("model"))).Stamp();
                }();
                ASSERT_TRUE(found == stamp || (found == 1 && hasThrown)) << found;
                ASSERT_EQ(Check(), "sound");
            }
            settled = n == 20 ? Memory::live : settled;
        }
        EXPECT_GT(thrown, 100);
        EXPECT_LT(Memory::live, settled + 10) << "after " << n;
    }
};

TEST_F(AllocationFaults, A_save_fails_as_a_whole_and_a_first_one_leaves_the_array_in_memory)
{
    ASSERT_TRUE(IS_SQLITE_WATCHED);
    RefuseEachIn(
        [&] {
            sql_Store store = Open();
            Model model(cls_ReadVisitor(store.OpenRoot("model")));
            model.Fill(2);
            model.part = Part("2", 3);
            model.Save(store, BOX);
        },
        2);
    std::filesystem::remove(Path());
    RefuseEachIn(
        [&] {
            sql_Store store = Open();
            const Model model(2);
            try {
                model.Save(store, BOX);
            } catch (const std::exception&) {
                store.Rollback();
                EXPECT_EQ(model.Stamp(), 2);
                throw;
            }
        },
        2);
}

TEST_F(AllocationFaults, Opening_and_reading_change_nothing)
{
    RefuseEachIn(
        [&] {
            sql_Store store = sql_Store::OpenReadOnly(Path(), registrar);
            const Model model(cls_ReadVisitor(store.OpenRoot("model")));
            EXPECT_EQ(model.Stamp(), 1);
            EXPECT_EQ(model.array.ConstGet(3000), 1);
            EXPECT_EQ(model.array.ConstGet(0), 1);
            EXPECT_EQ(store.Roots().size(), 1U);
            EXPECT_TRUE(store.UnknownClasses().empty());
        },
        1);
}
} // namespace
