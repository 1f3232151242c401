// Directory reading for 32-bit programs under the emulator. The kernel takes them for 64-bit programs and
// hands out directory positions of 64 bits; the C library's readdir() refuses those (EOVERFLOW), while its
// readdir64() takes them. Loaded into every emulated program through the prepared folder's ld.so.preload.
#include <dirent.h>
#include <stddef.h>

_Static_assert(offsetof(struct dirent64, d_reclen) == offsetof(struct dirent, d_reclen) + 8, "the tails are alike");
_Static_assert(offsetof(struct dirent64, d_name) == offsetof(struct dirent, d_name) + 8, "the tails are alike");

// The narrow entry is the wide one from its ninth byte on, with the inode cut and no position.
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
