#pragma once

#include "cow_String.h"
#include "sql_Store.h"

#include <memory>

/// The file that a session was saved to or opened from, open for as long as the session pages from it.
///
/// Ownership:  owns the open store, not the registrar.
/// Threads:    one thread of the process that opened it.
/// Errors:     uti_SystemException for a file that the system does not give; nex_TextException that names the file and
///             says whether it is in use, damaged, of a newer format or no store.
class fem_ModelFile
{
public:
    /// Opens a file to read, and unless `readOnly` to write.
    static std::unique_ptr<fem_ModelFile> Open(const cow_String& path, bool readOnly,
                                               const cls_ClassRegistrar& registrar);
    /// Opens a store in order to replace what is in it, or makes one.
    static std::unique_ptr<fem_ModelFile> OpenOrCreate(const cow_String& path, const cls_ClassRegistrar& registrar);

    bool IsAt(const cow_String& path) const;
    /// Absolute: the current directory may change.
    const cow_String& Path() const noexcept { return m_path; }
    sql_Store& Store() noexcept { return m_store; }

    /// Closes the file after a failed save, and removes it if that save made it.
    static void Abandon(std::unique_ptr<fem_ModelFile> file) noexcept;

private:
    fem_ModelFile(const cow_String& path, bool isNew, sql_Store store);

    cow_String m_path;
    bool m_isNew;
    sql_Store m_store;
};
