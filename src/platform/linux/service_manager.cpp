#include "platform/linux/service_manager.h"

#include <link.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <systemd/sd-daemon.h>
#include <unistd.h>

#include <cstdlib>

namespace orvane {

void ServiceManager::Ready() {
  sd_notify(0, "READY=1");
}

void ServiceManager::Status(const std::string& text) {
  if (text == status_) return;
  status_ = text;
  sd_notify(0, ("STATUS=" + text).c_str());
}

void ServiceManager::Alive() {
  sd_notify(0, "WATCHDOG=1");
}

void ServiceManager::Stopping() {
  sd_notify(0, "STOPPING=1");
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
