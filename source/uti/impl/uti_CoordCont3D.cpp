#include "uti_CoordCont3D.h"

#include "VEXCRT.h"
#include "cls_ClassRegistrar.h"
#include "cls_MementoRead.h"
#include "cls_MementoWrite.h"
#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"
#include "cow_1DArray.h"
#include "cow_2DArray.h"
#include "cow_COW.h"
#include "nex_TextException.h"
#include "typ_ArchCompTable.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

namespace
{
constexpr const char* SOURCE = "source/uti/impl/uti_CoordCont3D";
constexpr std::uint32_t TYPE_ID = 0x20008;
constexpr int MUTATING_GROWTH = 100; // points
constexpr int SMALL_BLOCK = 16;      // of a list, in floats
constexpr int LARGE_BLOCK = 1200;
constexpr int MAX_POINTS = std::numeric_limits<int>::max() / 3;

cls_FieldHandle CountField()
{
    return cls_FieldHandle("numCoord");
}

cls_FieldHandle CoordinatesField()
{
    return cls_FieldHandle("tempCoord");
}

/// Gives `holds` back; a condition that does not hold is reported.
bool Check(bool holds, const char* condition, int line)
{
    if (!holds) {
        VEXCRT::_assert(condition, SOURCE, line);
    }
    return holds;
}
} // namespace

uti_CoordCont3D::uti_CoordCont3D(float* array, int arrayLength, int dim)
{
    SetCArray(array, arrayLength, dim);
}

uti_CoordCont3D::uti_CoordCont3D(float (*array)[2], int count)
{
    const std::unique_ptr<float[][2]> owned(array);
    if (count <= 0 || !Check(array != nullptr, "realArray != 0", __LINE__)) {
        return;
    }
    count = std::min(count, MAX_POINTS);
    GrowFixed(count);
    for (int i = 0; i < count; ++i) {
        Put(i, array[i][0], array[i][1], 0.0f);
    }
    m_numCoord = count;
}

uti_CoordCont3D::uti_CoordCont3D(const uti_CoordCont3D& other)
    : m_numCoord(other.m_numCoord), m_mutCoord(other.m_mutCoord), m_uid(other.m_uid)
{
    if (other.m_fixed && m_numCoord != 0) {
        Copy3DFixedCoord(other.m_fixed.get(), DIM * m_numCoord);
    }
}

// Defined for users of the DLL who bind references to them.
constexpr int uti_CoordCont3D::CLASS_VERSION;
constexpr int uti_CoordCont3D::NO_INDEX;

uti_CoordCont3D& uti_CoordCont3D::operator=(const uti_CoordCont3D& other)
{
    uti_CoordCont3D copy(other);
    m_uid = copy.m_uid;
    m_numCoord = copy.m_numCoord;
    m_fixed = std::move(copy.m_fixed);
    m_fixedLength = copy.m_fixedLength;
    m_mutCoord = std::move(copy.m_mutCoord);
    m_cachedIndex = NO_INDEX;
    return *this;
}

void uti_CoordCont3D::CheckForm() const
{
    if (m_fixed) {
        Check(m_numCoord <= m_fixedLength / DIM, "numCoord*3 <= fixedLength", __LINE__);
    } else {
        Check(m_numCoord == m_mutCoord.Length(), "numCoord == mutCoord.Size()", __LINE__);
    }
}

void uti_CoordCont3D::CleanupFixedCoord() const noexcept
{
    m_fixed.reset();
    m_fixedLength = 0;
}

void uti_CoordCont3D::Copy3DFixedCoord(const float* array, int arrayLength)
{
    Check(arrayLength % 3 == 0, "! (arrayLength % 3)", 237);
    m_fixed = std::make_unique_for_overwrite<float[]>(static_cast<std::size_t>(arrayLength));
    m_fixedLength = arrayLength;
    std::copy_n(array, arrayLength, m_fixed.get());
}

void uti_CoordCont3D::Adopt2DFixedCoord(float* array, int arrayLength)
{
    const std::unique_ptr<float[]> owned(array);
    Check(arrayLength % 2 == 0, "! (arrayLength % 2)", 256);
    const int count = std::clamp(arrayLength / 2, 0, MAX_POINTS);
    auto fixed = std::make_unique_for_overwrite<float[]>(static_cast<std::size_t>(count) * DIM);
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        fixed[DIM * i] = array[2 * i];
        fixed[DIM * i + 1] = array[2 * i + 1];
        fixed[DIM * i + 2] = 0.0f;
    }
    m_fixed = std::move(fixed);
    m_fixedLength = DIM * count;
    m_numCoord = count;
}

void uti_CoordCont3D::SetCArray(float* array, int arrayLength, int dim)
{
    std::unique_ptr<float[]> owned(array);
    ClearAll();
    if (!Check(arrayLength > 0, "arrayLength > 0", 115) || !Check(array != nullptr, "realArray != 0", __LINE__)) {
        return;
    }
    if (dim == 2) {
        Adopt2DFixedCoord(owned.release(), arrayLength);
    } else {
        m_fixed = std::move(owned);
        m_fixedLength = arrayLength;
        m_numCoord = arrayLength / DIM;
    }
}

void uti_CoordCont3D::ClearAll()
{
    m_numCoord = 0;
    m_cachedIndex = NO_INDEX;
    CleanupFixedCoord();
    m_mutCoord = PointList();
}

void uti_CoordCont3D::MutateFixedCoord()
{
    if (!m_fixed) {
        return;
    }
    const int block = m_fixedLength < LARGE_BLOCK ? SMALL_BLOCK : LARGE_BLOCK;
    PointList list(block, m_fixedLength >= block ? m_fixedLength / block : m_fixedLength);
    list.Reserve(m_numCoord + 1); // one is about to follow
    uti_Coord3D point(m_cache);
    for (int i = 0; i < m_numCoord; ++i) {
        const float* const fixed = FixedPoint(i);
        point.Set(fixed[0], fixed[1], fixed[2]);
        list.Append(point);
    }
    m_mutCoord = std::move(list);
    CleanupFixedCoord();
}

void uti_CoordCont3D::Unmutate() const
{
    if (m_fixed || m_numCoord == 0) {
        return;
    }
    m_fixed = std::make_unique_for_overwrite<float[]>(static_cast<std::size_t>(m_numCoord) * DIM);
    m_fixedLength = DIM * m_numCoord;
    float* place = m_fixed.get();
    for (const uti_Coord3D& point : std::as_const(m_mutCoord)) {
        *place++ = point.X();
        *place++ = point.Y();
        *place++ = point.Z();
    }
    m_mutCoord = PointList();
}

const float* uti_CoordCont3D::GetCArray() const
{
    Unmutate();
    return m_fixed.get();
}

/// Overwrites a point that is there.
void uti_CoordCont3D::Put(int index, float x, float y, float z)
{
    if (m_fixed) {
        float* const place = m_fixed.get() + std::ptrdiff_t{DIM} * index;
        place[0] = x;
        place[1] = y;
        place[2] = z;
    } else {
        m_mutCoord.Get(index).Set(x, y, z);
    }
    if (m_cachedIndex == index) {
        m_cachedIndex = NO_INDEX;
    }
}

void uti_CoordCont3D::Append(float x, float y, float z)
{
    if (m_fixed && m_numCoord < m_fixedLength / DIM) {
        Put(m_numCoord, x, y, z);
    } else {
        MutateFixedCoord();
        m_cachedIndex = NO_INDEX;
        m_cache.Set(x, y, z);
        m_mutCoord.Append(m_cache);
    }
    ++m_numCoord;
}

void uti_CoordCont3D::AppendPoints(const float* array, int count, int dim)
{
    if (count <= 0 || !Check(array != nullptr, "realArray != 0", __LINE__)) {
        return;
    }
    std::vector<float> kept; // points of this container, which go when it mutates
    const std::less<const float*> isBefore;
    if (m_fixed && !isBefore(array, m_fixed.get()) && isBefore(array, m_fixed.get() + m_fixedLength)) {
        kept.assign(array, array + std::ptrdiff_t{dim} * count);
        array = kept.data();
    }
    for (; count > 0; --count, array += dim) {
        Append(array[0], array[1], dim == DIM ? array[2] : 0.0f);
    }
    CheckForm();
}

void uti_CoordCont3D::Append(const float* array, int arrayLength, int dim)
{
    if (Check((dim == 2 || dim == DIM) && arrayLength % dim == 0, "! (arrayLength % dim)", __LINE__)) {
        AppendPoints(array, arrayLength / dim, dim);
    }
}

void uti_CoordCont3D::Append(const float (*array)[3], int count)
{
    AppendPoints(array ? *array : nullptr, count, DIM);
}

void uti_CoordCont3D::Append(const float (*array)[2], int count)
{
    AppendPoints(array ? *array : nullptr, count, 2);
}

void uti_CoordCont3D::Append(const uti_CoordCont3D& other)
{
    if (other.m_fixed) {
        AppendPoints(other.m_fixed.get(), other.m_numCoord, DIM);
        return;
    }
    const PointList points = other.m_mutCoord; // it may be this container's
    for (const uti_Coord3D& point : points) {
        Append(point);
    }
}

bool uti_CoordCont3D::Remove(int index)
{
    return Remove(&index, 1);
}

bool uti_CoordCont3D::Remove(const int* indices, int n)
{
    std::vector<int> removed(indices, indices + std::max(n, 0));
    if (!std::all_of(removed.begin(), removed.end(), [this](int index) { return HasPoint(index); })) {
        return false;
    }
    std::sort(removed.begin(), removed.end());
    removed.erase(std::unique(removed.begin(), removed.end()), removed.end());
    if (removed.empty()) {
        return true;
    }
    int kept = removed.front();
    auto next = removed.begin();
    for (int i = kept; i < m_numCoord; ++i) {
        if (next != removed.end() && *next == i) {
            ++next;
            continue;
        }
        float x = 0.0f, y = 0.0f, z = 0.0f;
        GetCoord(i, x, y, z);
        Put(kept++, x, y, z);
    }
    m_cachedIndex = NO_INDEX;
    return Grow(kept);
}

bool uti_CoordCont3D::SetCoord(int index, float x, float y, float z)
{
    if (!Check(index >= 0 && index <= m_numCoord, "0", 693)) {
        return false;
    }
    if (index == m_numCoord && !Grow(m_numCoord + 1)) {
        return false;
    }
    Put(index, x, y, z);
    return true;
}

bool uti_CoordCont3D::GetCoord(int index, float& x, float& y, float& z) const
{
    if (!HasPoint(index)) {
        return false;
    }
    if (m_fixed) {
        const float* const point = FixedPoint(index);
        x = point[0];
        y = point[1];
        z = point[2];
    } else {
        const uti_Coord3D& point = std::as_const(m_mutCoord)[index];
        x = point.X();
        y = point.Y();
        z = point.Z();
    }
    return true;
}

bool uti_CoordCont3D::GetCoord(int index, float& x, float& y) const
{
    float z = 0.0f;
    return GetCoord(index, x, y, z);
}

uti_Coord3D uti_CoordCont3D::operator[](int index)
{
    if (!Check(HasPoint(index), "index < numCoord", __LINE__)) {
        return {};
    }
    if (index != m_cachedIndex) {
        float x = 0.0f, y = 0.0f, z = 0.0f;
        GetCoord(index, x, y, z);
        m_cache.Set(x, y, z);
        m_cachedIndex = index;
    }
    return m_cache;
}

bool uti_CoordCont3D::AreCoordsEqual(int i, int j, float tolerance) const
{
    float first[3], second[3];
    if (!GetCoord(i, first[0], first[1], first[2]) || !GetCoord(j, second[0], second[1], second[2])) {
        return false;
    }
    double squared = 0.0;
    for (int axis = 0; axis < 3; ++axis) {
        const double apart = double{first[axis]} - double{second[axis]};
        squared += apart * apart;
    }
    return squared < double{tolerance} * double{tolerance};
}

bool uti_CoordCont3D::Grow(int n)
{
    if (n < 0 || n > MAX_POINTS) {
        return false;
    }
    try {
        const bool staysFixed = m_numCoord == 0 || (m_fixed && n < MUTATING_GROWTH);
        if (n <= m_numCoord) {
            m_mutCoord.Resize(m_fixed ? 0 : n);
        } else if (staysFixed) {
            GrowFixed(n);
        } else {
            MutateFixedCoord();
            GrowList(n);
        }
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
    m_numCoord = n;
    m_cachedIndex = NO_INDEX;
    CheckForm();
    return true;
}

void uti_CoordCont3D::GrowFixed(int n)
{
    const int present = DIM * m_numCoord;
    if (DIM * n > m_fixedLength) {
        auto grown =
            std::make_unique_for_overwrite<float[]>(static_cast<std::size_t>(DIM) * static_cast<std::size_t>(n));
        std::copy_n(m_fixed.get(), present, grown.get());
        m_fixed = std::move(grown);
        m_fixedLength = DIM * n;
        m_mutCoord = PointList();
    }
    std::fill(m_fixed.get() + present, m_fixed.get() + std::ptrdiff_t{DIM} * n, 0.0f);
}

void uti_CoordCont3D::GrowList(int n)
{
    m_mutCoord.MakeRoom(n - m_mutCoord.Length());
    uti_Coord3D origin(m_cache);
    origin.Set(0.0f, 0.0f, 0.0f);
    while (m_mutCoord.Length() < n) {
        m_mutCoord.Append(origin);
    }
}

bool operator==(const uti_CoordCont3D& left, const uti_CoordCont3D& right)
{
    if (left.m_numCoord != right.m_numCoord) {
        return false;
    }
    for (int i = 0; i < left.m_numCoord; ++i) {
        float a[3], b[3];
        left.GetCoord(i, a[0], a[1], a[2]);
        right.GetCoord(i, b[0], b[1], b[2]);
        if (!std::equal(a, a + 3, b)) {
            return false;
        }
    }
    return true;
}

uti_CoordCont3D::uti_CoordCont3D(const cls_ReadVisitor& visitor) : m_uid(visitor.GetUid())
{
    cls_MementoRead* const memento = visitor.Memento();
    if (memento == nullptr) {
        return;
    }
    const int count = memento->ReadInt(CountField(), 0);
    const cow_2DArray<float> points = memento->ReadFloatMatrix(CoordinatesField(), {});
    if (count != points.Rows() || (count != 0 && points.Columns() != DIM)) {
        nex_TextException("uti_CoordCont3D " + visitor.DbId() + ": not " + cow_String(count) + " points of 3 but " +
                          cow_String(points.Rows()) + " of " + cow_String(points.Columns()))
            .Throw(SOURCE, __LINE__);
    }
    if (count != 0) {
        Copy3DFixedCoord(points.data(), points.Length());
        m_numCoord = count;
    }
}

void uti_CoordCont3D::DBWrite(const cls_WriteVisitor& visitor) const
{
    if (!visitor.StartWrite(TYPE_ID, m_uid)) {
        return;
    }
    cow_2DArray<float> points(m_numCoord, DIM);
    for (int i = 0; i < m_numCoord; ++i) {
        float* const row = points.Write() + std::ptrdiff_t{DIM} * i;
        GetCoord(i, row[0], row[1], row[2]);
    }
    visitor.Memento()->WriteInt(CountField(), m_numCoord);
    visitor.Memento()->WriteFloatMatrix(CoordinatesField(), points);
}

std::uint32_t uti_CoordCont3D::DynTypeId() const
{
    return TYPE_ID;
}

bool uti_CoordCont3D::IsA(std::uint32_t typeId) const
{
    return typ_ArchCompTable::IsParent(DynTypeId(), typeId);
}

void uti_CoordCont3D::InitializeMetadata(cls_ClassRegistrar& registrar)
{
    const auto matrix = cls_CollectionTypeFix(cls_COLLECTION_2D_ARRAY, static_cast<float*>(nullptr));
    registrar.CreateClassMD("uti_CoordCont3D", TYPE_ID, CLASS_VERSION, &Ctor, 1)
        .AddDtor(&CowDtor)
        .AddAttribute(CountField(), cls_ATTRIBUTE_INT, 1, cls_COLLECTION_NONE)
        .AddAttribute(CoordinatesField(), cls_ATTRIBUTE_REAL, 1, matrix);
}

void* uti_CoordCont3D::Ctor(cls_ReadVisitor& visitor)
{
    return new uti_CoordCont3D(visitor);
}

void uti_CoordCont3D::CowDtor(cls_PayloadHolder* payload)
{
    using Holder = cow_COW<uti_CoordCont3D, cow_Direct<uti_CoordCont3D>>;
    *reinterpret_cast<Holder*>(payload) = Holder();
}

std::uint32_t uti_CoordCont3D::TypeId()
{
    return TYPE_ID;
}

void* uti_CoordCont3D::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<uti_CoordCont3D>(in, place);
}

void uti_CoordCont3D::DtorFunc(void* object)
{
    obj_Destroy<uti_CoordCont3D>(object);
}

void uti_CoordCont3D::ReadData(bio_Ifilter& in, void* object)
{
    const std::uint64_t start = in.Offset();
    cow_1DArray<float> floats;
    in >> floats;
    if (floats.Length() % DIM != 0) {
        in.FailAt("coordinates that make no whole points", start);
    }
    auto& container = *static_cast<uti_CoordCont3D*>(object);
    container.ClearAll();
    if (!floats.IsEmpty()) {
        container.Copy3DFixedCoord(floats.data(), floats.Length());
        container.m_numCoord = floats.Length() / DIM;
    }
}

void uti_CoordCont3D::WriteData(bio_Ofilter& out, const void* object)
{
    const auto& container = *static_cast<const uti_CoordCont3D*>(object);
    out << static_cast<std::uint32_t>(DIM * container.m_numCoord);
    for (int i = 0; i < container.m_numCoord; ++i) {
        float x, y, z;
        container.GetCoord(i, x, y, z);
        out << x << y << z;
    }
}

void uti_CoordCont3D::PrintData(pnt_PrettyPrint& out, const void* object)
{
    const auto& container = *static_cast<const uti_CoordCont3D*>(object);
    if (container.m_numCoord == 0) {
        out << "uti_CoordCont3D is empty\n";
        return;
    }
    out << (container.m_fixed ? "Fixed array:\n" : "Mutated array:\n");
    for (int i = 0; i < container.m_numCoord; ++i) {
        float x, y, z;
        container.GetCoord(i, x, y, z);
        out << x << " " << y << " " << z << "\n";
    }
}
