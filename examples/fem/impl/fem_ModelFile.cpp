#include "fem_ModelFile.h"

#include "uti_FileUtils.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <utility>

namespace
{

constexpr std::size_t CACHE_BYTES = std::size_t{32} << 20; // scripts run beside much else

std::string Text(const cow_String& path)
{
    return std::string(path.view());
}

} // namespace

fem_ModelFile::fem_ModelFile(const cow_String& path, bool isNew, sql_Store store)
    : m_path(std::filesystem::absolute(Text(path)).string()), m_isNew(isNew), m_store(std::move(store))
{
    m_store.SetCacheBytes(CACHE_BYTES);
}

std::unique_ptr<fem_ModelFile> fem_ModelFile::Open(const cow_String& path, bool readOnly,
                                                   const cls_ClassRegistrar& registrar)
{
    const std::string file = Text(uti_PreCheckFile(path, readOnly ? uti_ACCESS_READ : uti_ACCESS_READ_WRITE));
    sql_Store store = readOnly ? sql_Store::OpenReadOnly(file, registrar) : sql_Store::Open(file, registrar);
    return std::unique_ptr<fem_ModelFile>(new fem_ModelFile(path, /*isNew=*/false, std::move(store)));
}

std::unique_ptr<fem_ModelFile> fem_ModelFile::OpenOrCreate(const cow_String& path, const cls_ClassRegistrar& registrar)
{
    const std::string file = Text(uti_PreCheckFile(path, uti_ACCESS_WRITE));
    std::error_code error;
    const bool isNew = !std::filesystem::exists(file, error);
    const bool isEmpty = isNew || std::filesystem::is_empty(file, error);
    sql_Store store = isEmpty ? sql_Store::Create(file, registrar) : sql_Store::Open(file, registrar);
    return std::unique_ptr<fem_ModelFile>(new fem_ModelFile(path, isNew, std::move(store)));
}

bool fem_ModelFile::IsAt(const cow_String& path) const
{
    std::error_code error;
    return std::filesystem::equivalent(Text(path), Text(m_path), error) && !error;
}

void fem_ModelFile::Abandon(std::unique_ptr<fem_ModelFile> file) noexcept
{
    const cow_String path = file->m_path;
    const bool isNew = file->m_isNew;
    file.reset();
    std::error_code ignored;
    if (isNew) {
        std::filesystem::remove(Text(path), ignored);
    }
}
