#include "adapter/ZYN_ZipStream.h"

ZYN_ZipStream::ZYN_ZipStream(char const* path, openmode mode)
{
    if (mode == in) {
        handle = gzopen(path, "rb");
    } else if (mode == out) {
        handle = gzopen(path, "wb9");
    }
}

ZYN_ZipStream::~ZYN_ZipStream() { close(); }

ZYN_ZipStream& ZYN_ZipStream::read(char* buffer, unsigned int length)
{
    lastCount = gzread(handle, buffer, length);
    return *this;
}

ZYN_ZipStream& ZYN_ZipStream::write(char* buffer, unsigned int length)
{
    hasFailed = (gzwrite(handle, buffer, length) == 0 && length != 0) || hasFailed;
    return *this;
}

void ZYN_ZipStream::close()
{
    if (handle != nullptr) {
        int const outcome = gzclose(handle);
        hasFailed = hasFailed || (outcome != Z_OK && outcome != Z_BUF_ERROR); // the latter of a file read in part
        handle = nullptr;
        lastCount = 0;
    }
}
