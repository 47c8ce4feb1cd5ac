#pragma once

#include "omu_ObjectRef.h"

class fem_Part;

/// One element of a part, as scripts see it: a label and a reference, made when a script asks for it.
///
/// Ownership:  owned by the script; notices when its part is gone.
/// Errors:     then every use throws omu_AccessErrorException.
class fem_Element final : public omu_InterfaceObj
{
public:
    fem_Element(fem_Part& part, int label);

    /// Below the path of its part.
    cow_String AsString(int depth) const override;
    omu_Primitive* Copy() const override { return new fem_Element(*this); }

private:
    omu_Primitive* GetLabel();
    omu_Primitive* GetPart() { return m_part.Copy(); }
    omu_Primitive* GetNodes();
    omu_Primitive* GetQuality();

    const fem_Part& Part() const;

    omu_ObjectRef m_part;
    int m_label;
};
