/* Loaded into a program, it makes every disk look full. */
#include <sys/statvfs.h>

int fstatvfs(int file, struct statvfs* about) {
    (void)file;
    *about = (struct statvfs){.f_bsize = 4096, .f_frsize = 4096, .f_blocks = 1000};
    return 0;
}
