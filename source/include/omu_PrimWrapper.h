#pragma once

#include "omu_PrimDictionary.h"

/// A value that scripts carry around without looking inside: any object that the run-time type tables know, and a
/// dictionary of attributes beside it.
///
/// Ownership:  owns the object, deletes it through the destructor function of its type, and copies it with itself.
/// Threads:    one thread at a time.
/// Complexity: Copy is that of writing and reading the object.
/// Errors:     Copy throws nex_TextException when the object's type has no stream functions. Comparing or visiting a
///             wrapper reports an assertion.
/// References: Object() dies with the wrapper.
class VEXOMU_API omu_PrimWrapper : public omu_Primitive
{
public:
    /// Takes over `object` (may be null), whose type is `typeId`.
    omu_PrimWrapper(std::uint32_t typeId, void* object,
                    const omu_PrimDictionary<cow_String>& attributes = omu_PrimDictionary<cow_String>());
    explicit omu_PrimWrapper(bio_Ifilter& in);
    omu_PrimWrapper(const omu_PrimWrapper& other);
    omu_PrimWrapper& operator=(const omu_PrimWrapper&) = delete;
    ~omu_PrimWrapper() override;

    std::uint32_t WrappedTypeId() const noexcept { return m_typeId; }
    const void* Object() const noexcept { return m_object; }
    void* Object() noexcept { return m_object; }
    const omu_PrimDictionary<cow_String>& Attributes() const noexcept { return m_attributes; }
    omu_PrimDictionary<cow_String>& Attributes() noexcept { return m_attributes; }

    /// "Wrapper".
    cow_String TypeString() const override;
    /// "Wrapper".
    cow_String AsString(int depth) const override;
    bool operator==(const omu_Primitive& other) const override;
    void Accept(omu_PrimVisitor* visitor) const override;
    omu_Primitive* Copy() const override;
    std::uint32_t DynTypeId() const override;

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    /// Type id of the object, the object, the attributes; no type code of the wrapper.
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

private:
    void DestroyObject() noexcept;

    std::uint32_t m_typeId = 0;
    void* m_object = nullptr; // owned, of type m_typeId
    omu_PrimDictionary<cow_String> m_attributes;
};
