#include "fem_MeshFile.h"

#include "Test.h"
#include "nex_TextException.h"
#include "uti_SystemException.h"

#include <cerrno>

namespace
{

/// The regular tetrahedron of edge length sqrt(2) and a mirrored one on its first face, as bodies 1 and 2.
const std::string WHOLE = "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n"
                          "$Comments\nanything $Nodes\n$EndComments\n"
                          "$Nodes\n5\n10 0 0 0\n2 1 1 0\n30 1 0 1\n4 0 1 1\n5 2 2 2\n$EndNodes\r\n"
                          "$Elements\n4\n1 15 2 0 1 10\n2 2 2 0 1 10 2 30\n7 4 2 0 1 10 30 2 4\n8 4 3 9 2 0 2 30 4 5\n"
                          "$EndElements\n";

std::string Error(const std::string& text)
{
    return ErrorOf<nex_TextException>([&] { fem_MeshFile::Parse(text, "file"); });
}

/// WHOLE with one piece replaced.
std::string With(const std::string& piece, const std::string& replacement)
{
    std::string text = WHOLE;
    return text.replace(text.find(piece), piece.size(), replacement);
}

} // namespace

TEST(MeshFile, Bodies_become_meshes_of_their_own)
{
    const fem_MeshFile file = fem_MeshFile::Parse(WHOLE, "file");
    EXPECT_EQ(file.Bodies(), (std::vector<int>{1, 2}));
    const std::unique_ptr<const fem_Mesh> first = file.MeshOfBody(1);
    EXPECT_EQ(first->Coordinates().Length(), 4);
    EXPECT_FALSE(first->NodeRows().Exists(5));
    EXPECT_EQ(first->NodesOf(7), (fem_Mesh::Nodes{10, 30, 2, 4}));
    EXPECT_NEAR(first->Volume(), 1.0 / 3.0, 1e-15);
    EXPECT_NEAR(first->SurfaceArea(), 2.0 * std::sqrt(3.0), 1e-14);
    EXPECT_NEAR(std::abs(first->Quality(7)), 1.0, 1e-14) << "the regular tetrahedron is the best there is";
    const std::unique_ptr<const fem_Mesh> both = file.MeshOfBody(fem_MeshFile::ALL_BODIES);
    const double second = file.MeshOfBody(2)->SurfaceArea();
    EXPECT_NEAR(both->SurfaceArea(), first->SurfaceArea() + second - 2 * std::sqrt(3.0) / 2, 1e-14)
        << "the face between the two is no surface";
    EXPECT_EQ(file.MeshOfBody(3)->ElementRows().Length(), 0U);
    EXPECT_EQ(both->WorstElements(9).front().label, both->Quality(7) < both->Quality(8) ? 7 : 8);
}

TEST(MeshFile, What_is_wrong_is_said_with_file_and_line)
{
    const std::pair<std::string, const char*> rows[] = {
        {"", "file:0: no $Elements in the file"},
        {With("2.2 0", "4.1 0"), "file:2: only version 2 of the format can be read"},
        {With("2.2 0", "2.2 1"), "file:2: only the ASCII form of the format can be read"},
        {With("$EndMeshFormat", "$EndMesh"), "file:3: $EndMeshFormat expected"},
        {With("$Nodes\n5", "$Nodes\n2000000000"), "file:14: a node label expected"},
        {With("$Nodes\n5", "$Nodes\nfive"), "file:8: a number of nodes expected"},
        {With("2 1 1 0", "0 1 1 0"), "file:10: a node label above 0 expected"},
        {With("2 1 1 0", "10 1 1 0"), "file:14: node 10 is there twice"},
        {With("1 0 1\n", "1 nan 1\n"), "file:11: a coordinate that is no finite number of single precision"},
        {With("1 0 1\n", "1 0 3.5e38\n"), "file:11: a coordinate that is no finite number of single precision"},
        {With("1 0 1\n", "1 0 1 5\n"), "file:11: more on the line than expected"},
        {With("1 0 1\n", "1 0x 1\n"), "file:11: a coordinate expected"},
        {With("10 30 2 4\n", "10 30 2 99\n"), "file:19: there is no node 99"},
        {With("7 4 2", "7 5 2"), "file:19: elements of type 5 cannot be read"},
        {With("7 4 2 0 1", "7 4 2 0 -1"), "file:19: a body with a positive number expected"},
        {With("8 4 3", "7 4 3"), "file:21: element 7 is there twice"},
        {With("8 4 3", "8 4 999999999"), "file:20: an element needs 2 to 64 tags"},
        {"stray\n" + WHOLE, "file:1: a section expected"},
    };
    for (const auto& [text, message] : rows) {
        EXPECT_EQ(Error(text), message);
    }
    for (std::size_t length = 0; length + 2 < WHOLE.size(); ++length) { // the last line ends with or without a break
        EXPECT_NE(Error(WHOLE.substr(0, length)), "") << length;
    }
}

TEST(MeshFile, A_file_that_cannot_be_read_is_named_with_the_systems_number)
{
    try {
        fem_MeshFile::Read("no such file.msh");
        FAIL();
    } catch (const uti_SystemException& error) {
        EXPECT_EQ(error.ErrorNumber(), ENOENT);
        EXPECT_EQ(error.FileName(), "no such file.msh");
    }
}
