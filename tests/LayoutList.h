#pragma once

#include "cls_ClassMetadata.h"
#include "cls_ClassRegistrar.h"
#include "sql_RecordFile.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <set>
#include <string>

/// "class version fingerprint": the fingerprint is of the names, types, counts and collections of all attributes.
inline std::string LayoutRow(const cls_ClassMetadata& metadata)
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

/// Every registered version of a class has to be in the list with the attributes that it has, and nothing else.
inline void ExpectLayouts(const cls_ClassRegistrar& registrar, const std::string& list)
{
    std::set<std::string> listed;
    std::ifstream file(list);
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with('#')) {
            listed.insert(line);
        }
    }
    for (const cls_ClassMetadata* metadata : registrar.All()) {
        const std::string row = LayoutRow(*metadata);
        EXPECT_EQ(listed.erase(row), 1U)
            << list << " lacks \"" << row << "\".\nIf it has another fingerprint for this class and version, the "
            << "attributes were changed: files have objects of the old layout, so restore it, and register the new one "
            << "under the next version.\nA new class or version: add the row.";
    }
    for (const std::string& row : listed) {
        ADD_FAILURE() << list << " has \"" << row << "\", and no class is like that: files may have such objects.";
    }
}
