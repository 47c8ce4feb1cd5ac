#pragma once

#include "VEXutl_export.h"
#include "cow_String.h"

#include <cstdint>
#include <exception>

class bio_Ifilter;
class bio_Ofilter;
class pnt_PrettyPrint;
class nex_Exception;

/// The virtual operations of every exception, in their promised order. They stand in a base of their own so that
/// std::exception, which nex_Exception is too, cannot add its slots before them.
class VEXUTL_API nex_ExceptionOperations
{
public:
    virtual ~nex_ExceptionOperations() = default;

    /// UserReport() with file and line of the throw.
    virtual cow_String DeveloperReport() const = 0;
    /// What a user is told.
    virtual cow_String UserReport() const = 0;
    /// The message.
    virtual cow_String AsString() const = 0;
    /// Throws a copy of the most derived type.
    virtual void Propagate() const = 0;
    /// A new heap copy; the caller owns it.
    virtual nex_Exception* Copy() const = 0;
    virtual std::uint32_t DynTypeId() const = 0;
};

/// The std::exception side of nex_Exception: only what() is overridden here.
class VEXUTL_API nex_StdException : public std::exception
{
public:
    /// The message, AsString(); valid until the exception is changed or gone.
    const char* what() const noexcept override;

private:
    friend class nex_Exception; // what() relies on being a part of one
    nex_StdException() = default;

    mutable cow_String m_what;
};

/// Root of all exceptions.
///
/// Ownership:  an ordinary value; texts are shared by copies.
/// Threads:    belongs to the thread that throws it.
/// Example:    nex_TextException("no such table").Throw("source/omu/impl/omu_BaseTable", __LINE__);
class VEXUTL_API nex_Exception : public nex_ExceptionOperations, public nex_StdException
{
public:
    nex_Exception() = default;
    explicit nex_Exception(bio_Ifilter& in);

    cow_String DeveloperReport() const override;
    cow_String UserReport() const override;
    /// Empty: the root has no message.
    cow_String AsString() const override;
    void Propagate() const override;
    nex_Exception* Copy() const override;
    std::uint32_t DynTypeId() const override;

    /// Records where the exception is raised and throws a copy of its most derived type.
    [[noreturn]] void Throw(const char* file, int line);

    const cow_String& File() const noexcept { return m_file; }
    int Line() const noexcept { return m_line; }

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    /// File, then line.
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

private:
    cow_String m_file;
    int m_line = 0;
};
