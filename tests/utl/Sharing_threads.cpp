#include "Test.h"
#include "cow_COW.h"
#include "cow_List.h"
#include "cow_Map.h"
#include "cow_String.h"

TEST(Sharing, Copies_on_several_threads_are_read_and_written_apart)
{
    const cow_String text("a text that is too long to live in the object");
    const cow_List<cow_String> list{text, text, text};
    cow_Map<int, cow_String> map;
    for (int i = 0; i < 200; ++i) {
        map.Insert(i, text);
    }
    const cow_COW<cow_Map<int, cow_String>> holder(map);

    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        // The thread's own copies, made on it: other threads read and drop theirs meanwhile.
        threads.emplace_back([&list, holder, number] {
            for (int round = 0; round < 200; ++round) {
                cow_List<cow_String> ownList(list);
                ownList.Get(round % 3).Append(cow_String(number));
                cow_COW<cow_Map<int, cow_String>> own(holder);
                own.Get()->Get(round)->Set(0, 'A');
                own.Get()->Remove(199 - round);
                EXPECT_EQ(own->Find(199 - round), nullptr);
            }
        });
    }
    map.Clear();
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(list[0], text);
    EXPECT_EQ(holder->Length(), 200);
    EXPECT_EQ(*holder->Find(0), text);
}
