#pragma once

#include "VEXomu_export.h"
#include "cls_PayloadHolder.h"
#include "cls_Uid.h"
#include "cow_1DArrayList.h"
#include "obj_Stream.h"
#include "uti_Coord3D.h"

#include <cstdint>
#include <memory>

class cls_ClassRegistrar;
class cls_ReadVisitor;
class cls_WriteVisitor;

/// Points, in one of two forms: a flat array of floats x0, y0, z0, x1, ... (fixed), which C interfaces take as it is, and
/// a list that grows (mutated). A container starts fixed and becomes mutated when it outgrows its array.
///
/// Stream: the floats as a counted array; either form is read as the fixed one. Stored as "numCoord" and the matrix
/// "tempCoord" of so many rows of three. The identity is no part of a stream.
/// Ownership:  owns its points. A copy has points of its own and shares the identity.
/// Threads:    one thread at a time, also for GetCArray, which may change the form; the identity binds it to a thread.
/// Complexity: access O(1); Append amortised O(1); a change of the form, Remove, copy O(points).
/// Errors:     misuse is an assertion, and the rest of the call does nothing; nex_TextException for a damaged stream or
///             record.
/// References: what GetCArray gives dies with the next call that is not const.
/// Example:    uti_CoordCont3D nodes; nodes.Append(0.0f, 1.0f); Draw(nodes.GetCArray(), nodes.Length());
class VEXOMU_API uti_CoordCont3D
{
public:
    static constexpr int CLASS_VERSION = 203;

    uti_CoordCont3D() = default;
    /// Takes over `array`, made by new float[arrayLength]: x, y for `dim` 2, x, y, z otherwise.
    uti_CoordCont3D(float* array, int arrayLength, int dim);
    /// Takes over `array`, made by new float[count][2].
    uti_CoordCont3D(float (*array)[2], int count);
    /// For ReadData to fill.
    explicit uti_CoordCont3D(bio_Ifilter&) {}
    explicit uti_CoordCont3D(const cls_ReadVisitor& visitor);
    uti_CoordCont3D(const uti_CoordCont3D& other);
    uti_CoordCont3D& operator=(const uti_CoordCont3D& other);
    virtual ~uti_CoordCont3D() = default;

    virtual std::uint32_t DynTypeId() const;
    /// True when the object is of the class or of one derived from it.
    virtual bool IsA(std::uint32_t typeId) const;
    virtual void DBWrite(const cls_WriteVisitor& visitor) const;

    int Length() const noexcept { return m_numCoord; }
    bool IsFixed() const noexcept { return m_fixed != nullptr; }
    const cls_Uid& Uid() const noexcept { return m_uid; }

    void Append(float x, float y, float z);
    void Append(float x, float y) { Append(x, y, 0.0f); }
    /// Points of `dim` (2 or 3) floats; `arrayLength` counts floats.
    void Append(const float* array, int arrayLength, int dim);
    void Append(const float (*array)[3], int count);
    void Append(const float (*array)[2], int count);
    void Append(const uti_Coord3D& point) { Append(point.X(), point.Y(), point.Z()); }
    void Append(const uti_CoordCont3D& other);

    /// False, and nothing removed, when there is no such point.
    bool Remove(int index);
    /// The same for `n` points, in any order, each once or more often.
    bool Remove(const int* indices, int n);
    void ClearAll();

    /// Replaces a point, or appends one at index Length(). False beyond that, or without memory.
    bool SetCoord(int index, float x, float y, float z);
    bool SetCoord(int index, const uti_Coord3D& point) { return SetCoord(index, point.X(), point.Y(), point.Z()); }
    bool SetCoord(int index, const float (&point)[3]) { return SetCoord(index, point[0], point[1], point[2]); }
    bool SetCoord(int index, const float (&point)[2]) { return SetCoord(index, point[0], point[1], 0.0f); }
    /// False, and nothing set, when there is no such point.
    bool GetCoord(int index, float& x, float& y, float& z) const;
    bool GetCoord(int index, float& x, float& y) const;
    /// The point; all points that one container gives share one identity. An assertion and the origin without such a point.
    uti_Coord3D operator[](int index);

    /// True when both points exist and are less than `tolerance` apart: for 0 never, promised, and it must stay.
    bool AreCoordsEqual(int i, int j, float tolerance) const;

    /// Makes it `n` points: drops the last ones, or adds points at the origin. A fixed array that has points grows in its
    /// form to fewer than 100, and mutates to more. False, and nothing done, without memory or for a negative n.
    bool Grow(int n);

    /// The floats; null when there are none. Costs nothing in the fixed form, which it makes of the other.
    const float* GetCArray() const;
    /// Takes over an array in place of all points, as the constructor does.
    void SetCArray(float* array, int arrayLength, int dim);

    /// Compares the points alone, whatever their form.
    friend VEXOMU_API bool operator==(const uti_CoordCont3D& left, const uti_CoordCont3D& right);

    static void InitializeMetadata(cls_ClassRegistrar& registrar);
    static void* Ctor(cls_ReadVisitor& visitor);
    static void CowDtor(cls_PayloadHolder* payload);

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

protected:
    void MutateFixedCoord();
    void Unmutate() const;
    void CleanupFixedCoord() const noexcept;
    void Copy3DFixedCoord(const float* array, int arrayLength);
    void Adopt2DFixedCoord(float* array, int arrayLength);

private:
    static constexpr int DIM = 3;
    static constexpr int NO_INDEX = 0x7FFFFFFF;

    using PointList = cow_1DArrayList<uti_Coord3D, float>;

    bool HasPoint(int index) const noexcept { return index >= 0 && index < m_numCoord; }
    const float* FixedPoint(int index) const noexcept { return m_fixed.get() + std::ptrdiff_t{DIM} * index; }
    void Put(int index, float x, float y, float z);
    void AppendPoints(const float* array, int count, int dim);
    void GrowFixed(int n);
    void GrowList(int n);
    void CheckForm() const;

    int m_numCoord = 0;
    uti_Coord3D m_cache; // what operator[] gave last, and where list points have their identity from
    int m_cachedIndex = NO_INDEX;
    // Invariant: m_fixed is null and m_mutCoord has m_numCoord points, or m_fixed has room for them and m_mutCoord has none.
    mutable std::unique_ptr<float[]> m_fixed;
    mutable int m_fixedLength = 0; // in floats; 0 without m_fixed
    mutable PointList m_mutCoord;
    cls_Uid m_uid = cls_Uid::AllocateUid();
};
