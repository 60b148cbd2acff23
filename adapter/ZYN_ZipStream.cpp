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
    gzwrite(handle, buffer, length);
    return *this;
}

void ZYN_ZipStream::close()
{
    if (handle != nullptr) {
        gzclose(handle);
        handle = nullptr;
        lastCount = 0;
    }
}
