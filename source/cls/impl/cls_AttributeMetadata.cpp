#include "cls_AttributeMetadata.h"

template <> cls_AttributeMetadata omi_Btree<cow_String, cls_AttributeMetadata>::GetNullValue()
{
    return {cls_FieldHandle(), cls_AttributeType{}, 1, cls_COLLECTION_NONE};
}
