#include "cls_ClassMetadata.h"
#include "cls_ClassRegistrar.h"
#include "omu_PrimEnum.h"
#include "sql_RecordFile.h"
#include "uti_Coord3D.h"
#include "uti_CoordCont3D.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <set>
#include <string>

namespace
{
/// "class version fingerprint": the fingerprint is of the names, types, counts and collections of all attributes.
std::string RowOf(const cls_ClassMetadata& metadata)
{
    sql_Class layout{.row = 0, .name = metadata.Name(), .version = metadata.Version(), .typeId = 0, .attributes = {}};
    for (const cls_AttributeMetadata* attribute : metadata.Attributes()) {
        layout.attributes.push_back({attribute->FieldName(), static_cast<std::uint32_t>(attribute->Type()),
                                     attribute->Count(), static_cast<std::uint32_t>(attribute->Collection())});
    }
    char fingerprint[9];
    std::snprintf(fingerprint, sizeof fingerprint, "%08x", static_cast<unsigned>(sql_RecordFile::SumOf(layout)));
    return std::string(metadata.Name().view()) + " " + std::to_string(metadata.Version()) + " " + fingerprint;
}

TEST(Layouts, Change_with_the_version_of_their_class_only)
{
    cls_ClassRegistrar registrar;
    omu_PrimEnum<bool, 1>::InitializeMetadata(registrar);
    uti_Coord3D::InitializeMetadata(registrar);
    uti_CoordCont3D::InitializeMetadata(registrar);

    std::set<std::string> listed;
    std::ifstream file(VEXOMU_TEST_DATA "/layouts.txt");
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with('#')) {
            listed.insert(line);
        }
    }
    for (const cls_ClassMetadata* metadata : registrar.All()) {
        const std::string row = RowOf(*metadata);
        EXPECT_EQ(listed.erase(row), 1U)
            << "layouts.txt lacks \"" << row << "\".\nIf it has another fingerprint for this class and version, the "
            << "attributes were changed: files have objects of the old layout, so restore it, and register the new one "
            << "under the next version.\nA new class or version: add the row.";
    }
    for (const std::string& row : listed) {
        ADD_FAILURE() << "layouts.txt has \"" << row
                      << "\", which is not registered (so): files may have such objects.";
    }
}
} // namespace
