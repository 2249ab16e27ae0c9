/* Loaded into an X server, which then cannot have the memory that a client offers
   to share: as a server on another machine, it has to refuse. */
#include <errno.h>

void* shmat(int id, const void* address, int flags) {
  (void)id, (void)address, (void)flags;
  errno = EACCES;
  return (void*)-1;
}
