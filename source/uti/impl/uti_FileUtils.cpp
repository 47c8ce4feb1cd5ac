#include "uti_FileUtils.h"

#include "VEXcrt_File.h"
#include "uti_SystemException.h"
#include "utl_FilePath.h"

#include <cstdio>
#include <string>

bool uti_fileCopy(const cow_String& from, const cow_String& to)
{
    const int error = VEXCRT::CopyFileOver(std::string(from.view()), std::string(to.view()));
    if (error == 0) {
        return false;
    }
    std::fprintf(stderr, "Copy file failed: %s\n", VEXCRT::SystemErrorText(error).c_str());
    return true;
}

cow_String uti_realpath(const cow_String& path)
{
    return path;
}

cow_String uti_PreCheckFile(const cow_String& path, uti_AccessModeEnm mode, const cow_String& shownName)
{
    const bool forReading = (mode & uti_ACCESS_READ) != 0;
    const bool forWriting = (mode & uti_ACCESS_WRITE) != 0;
    if (const int error = VEXCRT::CheckFile(std::string(path.view()), forReading, forWriting)) {
        uti_SystemException("PreCheckFile", error, shownName.IsEmpty() ? path : shownName)
            .Throw("source/uti/impl/uti_FileUtils", __LINE__);
    }
    return uti_realpath(path);
}

void uti_SplitPath(const cow_String& path, cow_String& directory, cow_String& name)
{
    const utl_FilePath whole(path); // its own copy: the results may replace the path
    directory = whole.Directory().PathName();
    name = whole.BaseName();
}
