#include "platform/linux/service_manager.h"

#include <link.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>

namespace orvane {
namespace {

constexpr timeval kPatience{0, 200000};

}  // namespace

// The library's own call would wait for as long as the manager reads nothing.
ServiceManager::ServiceManager() {
  const char* path = std::getenv("NOTIFY_SOCKET");
  if (!path || std::string(path).size() >= sizeof sockaddr_un::sun_path) return;
  path_ = path;
  if (path_.starts_with('@')) path_[0] = '\0';  // not in the file system
  socket_ = File(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  setsockopt(socket_.Get(), SOL_SOCKET, SO_SNDTIMEO, &kPatience, sizeof kPatience);
}

void ServiceManager::Status(const std::string& text) {
  if (text == status_) return;
  status_ = text;
  Tell("STATUS=" + text);
}

void ServiceManager::Tell(const std::string& words) const {
  if (!socket_) return;
  sockaddr_un address{AF_UNIX, {}};
  path_.copy(address.sun_path, sizeof address.sun_path - 1);
  sendto(socket_.Get(), words.data(), words.size(), MSG_NOSIGNAL,
         reinterpret_cast<const sockaddr*>(&address),
         static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + path_.size()));
}

void DropStartPages() {
  const auto drop = [](dl_phdr_info* object, std::size_t, void*) {
    const auto page = static_cast<ElfW(Addr)>(getpagesize());
    for (int i = 0; i < object->dlpi_phnum; ++i) {
      const ElfW(Phdr)& segment = object->dlpi_phdr[i];
      if (segment.p_type != PT_LOAD || (segment.p_flags & PF_W) != 0) continue;
      const ElfW(Addr) begin = (object->dlpi_addr + segment.p_vaddr) / page * page;
      const ElfW(Addr) end = object->dlpi_addr + segment.p_vaddr + segment.p_memsz;
      // NOLINTNEXTLINE(performance-no-int-to-ptr): addresses are what the loader tells.
      static_cast<void>(madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED));
    }
    return 0;
  };
  dl_iterate_phdr(drop, nullptr);
}

bool JournalTakesErrors() {
  const char* stream = std::getenv("JOURNAL_STREAM");
  struct stat error {};
  if (!stream || fstat(STDERR_FILENO, &error) != 0) return false;
  return std::to_string(error.st_dev) + ':' + std::to_string(error.st_ino) == stream;
}

}  // namespace orvane
