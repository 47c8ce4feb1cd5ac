// Streams of containers, tables and bit vectors: read or refused, and what was read is written as it was read.

#include "fuzz.h"

#include "bio_Ifilter.h"
#include "cow_1DArrayList.h"
#include "cow_2DArray.h"
#include "cow_List.h"
#include "cow_Map.h"
#include "cow_String.h"
#include "nex_TextException.h"
#include "omi_BlkBitVect.h"
#include "omu_Table.h"
#include "omu_Varray.h"
#include "utl_FilePath.h"

#include <tuple>

namespace
{

using Streamed = std::tuple<cow_String, cow_List<int>, cow_List<cow_String>, cow_1DArrayList<double>, cow_2DArray<int>,
                            cow_Map<int, cow_String>, cow_Map<cow_String, cow_List<int>>, omi_BlkBitVect,
                            omu_Table<unsigned int>, omu_Varray<unsigned int>, utl_FilePath>;

template <class T> void ReadAndWrite(std::string_view bytes)
{
    T value;
    bio_Ifilter in(bytes.data(), bytes.size());
    in >> value;
    bio_Ofilter out;
    out << value;
    const std::string written = BytesOf(out);
    T again;
    bio_Ifilter second(written.data(), written.size());
    second >> again;
    Require(second.AtEnd());
    bio_Ofilter outAgain;
    outAgain << again;
    Require(BytesOf(outAgain) == written);
}

template <std::size_t... INDEXES>
void ReadAndWriteOne(std::size_t wanted, std::string_view bytes, std::index_sequence<INDEXES...>)
{
    ((INDEXES == wanted ? ReadAndWrite<std::tuple_element_t<INDEXES, Streamed>>(bytes) : void()), ...);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    constexpr std::size_t COUNT = std::tuple_size_v<Streamed>;
    const std::size_t wanted = input.Take<std::uint8_t>() % COUNT;
    try {
        ReadAndWriteOne(wanted, input.Rest(), std::make_index_sequence<COUNT>());
    } catch (const nex_TextException&) { // refused
    }
    return 0;
}
