// The destructors of the interfaces that a storage engine implements: the virtual table of each stands here alone.

#include "cls_AgentRequest.h"
#include "cls_History.h"
#include "cls_MementoRead.h"
#include "cls_MementoWrite.h"

cls_AgentRequest::~cls_AgentRequest() = default;
cls_History::~cls_History() = default;
cls_MementoRead::~cls_MementoRead() = default;
cls_MementoWrite::~cls_MementoWrite() = default;
