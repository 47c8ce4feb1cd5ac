#pragma once

#include "VEXomu_export.h"

#include <cstdint>

class cls_MementoWrite;
class cls_Uid;

/// Names one element of a collection that is about to be written as an object.
///
/// Ownership:  does not own its collection.
class VEXOMU_API cls_AgentRequest
{
public:
    virtual ~cls_AgentRequest();

    /// A new record for the element, owned by the caller; null when the collection refuses it.
    virtual cls_MementoWrite* MakeWriteObj(std::uint32_t classId, const cls_Uid& uid) const = 0;
};
