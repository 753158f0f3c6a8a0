#include "platform/linux/file_view.h"

#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>

namespace orvane {
namespace {

// Touching a mapped page that lies behind the file's end raises SIGBUS. Its handler puts zeros
// under the rest of the mapping, for which it has to know the mappings.
struct Range {
  std::atomic<std::uintptr_t> begin{0};
  std::atomic<std::uintptr_t> end{0};
};

std::array<Range, 16> ranges;
std::uintptr_t page_size = 0;  // known before the handler is there
struct sigaction previous_action;

extern "C" void PutZerosUnder(int, siginfo_t* info, void*) {
  const auto address = reinterpret_cast<std::uintptr_t>(info->si_addr);
  for (const Range& range : ranges) {
    const std::uintptr_t begin = range.begin;
    const std::uintptr_t end = range.end;
    if (address < begin || address >= end) continue;
    const std::uintptr_t into_page = address % page_size;
    void* const page = static_cast<char*>(info->si_addr) - into_page;
    if (mmap(page, end - address + into_page, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED,
             -1, 0) != MAP_FAILED) {
      return;
    }
  }
  // Not ours: the fault comes again and finds whoever was there before.
  sigaction(SIGBUS, &previous_action, nullptr);
}

void InstallHandler() {
  static std::once_flag once;
  std::call_once(once, [] {
    page_size = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    struct sigaction action {};
    action.sa_sigaction = PutZerosUnder;
    action.sa_flags = SA_SIGINFO;
    sigemptyset(&action.sa_mask);
    sigaction(SIGBUS, &action, &previous_action);
  });
}

class MappedView : public FileView {
 public:
  MappedView(Range& range, void* bytes, std::size_t size)
      : range_(range), bytes_(bytes), size_(size) {
    range_.end = reinterpret_cast<std::uintptr_t>(bytes) + size;
    range_.begin = reinterpret_cast<std::uintptr_t>(bytes);
  }
  ~MappedView() override {
    munmap(bytes_, size_);
    range_.end = 0;
    range_.begin = 0;
  }
  std::string_view Bytes() const override { return {static_cast<const char*>(bytes_), size_}; }

 private:
  Range& range_;
  void* bytes_;
  std::size_t size_;
};

}  // namespace

std::unique_ptr<FileView> MapFile(const File& file, std::size_t size) {
  for (Range& range : ranges) {
    if (range.begin != 0) continue;
    InstallHandler();
    void* bytes = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.Get(), 0);
    if (bytes == MAP_FAILED) return nullptr;
    return std::make_unique<MappedView>(range, bytes, size);
  }
  return nullptr;
}

}  // namespace orvane
