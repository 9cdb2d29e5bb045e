// LD_PRELOAD shim for third-party acceptors that cannot be told where to listen: a bind()
// to any IPv4 address becomes a bind to 127.0.0.1, so nothing listens beyond loopback.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <netinet/in.h>
#include <string.h>
#include <sys/socket.h>

int bind(int fd, const struct sockaddr* addr, socklen_t len) {
    typedef int (*BindFn)(int, const struct sockaddr*, socklen_t);
    BindFn real = (BindFn)dlsym(RTLD_NEXT, "bind");
    if (addr != NULL && addr->sa_family == AF_INET && len >= sizeof(struct sockaddr_in)) {
        struct sockaddr_in loopback;
        memcpy(&loopback, addr, sizeof loopback);
        if (loopback.sin_addr.s_addr == htonl(INADDR_ANY)) {
            loopback.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
            return real(fd, (const struct sockaddr*)&loopback, sizeof loopback);
        }
    }
    return real(fd, addr, len);
}
