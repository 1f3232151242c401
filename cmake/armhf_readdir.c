// readdir() for 32-bit programs under the emulator. The 64-bit kernel returns 64-bit directory offsets, which the C
// library's readdir() rejects with EOVERFLOW; readdir64() accepts them. The prepared folder's ld.so.preload loads this
// into every emulated program.
#include <dirent.h>
#include <stddef.h>

_Static_assert(offsetof(struct dirent64, d_reclen) == offsetof(struct dirent, d_reclen) + 8, "d_reclen must match");
_Static_assert(offsetof(struct dirent64, d_name) == offsetof(struct dirent, d_name) + 8, "d_name must match");

// The result overlays the 64-bit entry from its ninth byte on; the inode is truncated and d_off is 0.
struct dirent* readdir(DIR* directory) {
    struct dirent64* wide = readdir64(directory);
    if (wide == NULL) {
        return NULL;
    }
    const ino_t inode = (ino_t)wide->d_ino;
    struct dirent* narrow = (struct dirent*)((char*)wide + 8);
    narrow->d_ino = inode;
    narrow->d_off = 0;
    return narrow;
}
