// ZYN_ZipStream: a gzip file, read or written as a stream of the uncompressed bytes; for the adapter's compressed log.
#pragma once

#include <zlib.h>

// Open from construction to close(), for one thread at a time. Ask is_open() first: a closed stream delivers nothing
// and takes nothing (gcount() -1, get() 0xFF, eof() false, so that good() is true).
//
// Reading takes as much memory as zlib's window, whatever the file unpacks to. What a damaged file looks like:
//   not a gzip file            its bytes as they are
//   several members            their contents, one after the other
//   bytes after the last one   ignored
//   cut short                  what there was, then an end like that of a whole file
//   wrong check sum or data    gcount() -1 from then on; what the reads before delivered may be wrong
// A read that fails does not make eof() true: a loop ends when gcount() is not positive.
class ZYN_ZipStream {
public:
    enum openmode : int {
        in = 0,  // reads
        out = 1, // replaces the file, compressing at the highest level
    };

    // Opens `path`. The stream stays closed when that fails, and for any other mode.
    ZYN_ZipStream(char const* path, openmode mode);
    ZYN_ZipStream(ZYN_ZipStream const&) = delete;
    ZYN_ZipStream& operator=(ZYN_ZipStream const&) = delete;
    ~ZYN_ZipStream();

    bool is_open() const { return handle != nullptr; }
    // Whether a read went past the last byte.
    bool eof() const { return gzeof(handle) != 0; }
    bool good() const { return !eof(); }
    // What the last read() delivered: the number of bytes, 0 at the end of the file, -1 for an error or for a length
    // beyond the int range; 0 before the first one and after close().
    int gcount() const { return lastCount; }

    // Reads up to `length` bytes; gcount() tells how many. Fewer than that only at the end of the file.
    ZYN_ZipStream& read(char* buffer, unsigned int length);
    // Reads one byte. At the end of the file, where eof() tells it apart, and for an error it is 0xFF.
    ZYN_ZipStream& get(char& c)
    {
        // zlib's macro takes the byte from the file's buffer, but would look into a null handle.
        c = static_cast<char>(handle != nullptr ? gzgetc(handle) : -1);
        return *this;
    }
    // Writes `length` bytes, at most the int range; fail() tells of an error.
    ZYN_ZipStream& write(char* buffer, unsigned int length);
    // Completes and closes the file: only then has all that was written reached it. A closed stream stays as it is.
    void close();
    // Whether something that was written is not in the file, such as on a full disk; the rest of the writes is lost
    // then, too. zlib keeps much before it writes: an error of a write may show with a later one, or with close(),
    // which leaves the answer as it is.
    bool fail() const { return hasFailed; }

private:
    gzFile handle = nullptr;
    int lastCount = 0;
    bool hasFailed = false;
};
