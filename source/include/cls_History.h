#pragma once

#include "VEXomu_export.h"

class cls_Uid;

/// Where a storage engine keeps track of changed objects.
class VEXOMU_API cls_History
{
public:
    virtual ~cls_History();

    /// Notes that the object of this identity changed: the engine links an entry of its own into the uid's history.
    virtual void NoteChange(const cls_Uid& uid) = 0;
};
