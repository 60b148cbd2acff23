#include "adapter/ZYN_ZipStream.h"

#include <zlib.h>

ZYN_ZipStream::ZYN_ZipStream(char const* path, openmode mode)
{
    if (mode == in) {
        handle = gzopen(path, "rb");
    } else if (mode == out) {
        handle = gzopen(path, "wb9");
    }
}

ZYN_ZipStream::~ZYN_ZipStream() { close(); }

bool ZYN_ZipStream::eof() const { return gzeof(handle) != 0; }

ZYN_ZipStream& ZYN_ZipStream::read(char* buffer, unsigned int length)
{
    lastCount = gzread(handle, buffer, length);
    return *this;
}

ZYN_ZipStream& ZYN_ZipStream::get(char& c)
{
    // The macro gzgetc would look into a null handle; -1 is what zlib's function of that name answers for one.
    c = static_cast<char>(handle != nullptr ? gzgetc(handle) : -1);
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
