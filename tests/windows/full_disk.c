/* Loaded into a program, it makes every disk look as if that many blocks of 4096 bytes were free: FREE. */
#include <sys/vfs.h>

int fstatfs(int file, struct statfs* about) {
    (void)file;
    *about = (struct statfs){.f_type = 0x01021994,
                             .f_bsize = 4096,
                             .f_frsize = 4096,
                             .f_blocks = 1000000,
                             .f_bfree = FREE,
                             .f_bavail = FREE};
    return 0;
}
