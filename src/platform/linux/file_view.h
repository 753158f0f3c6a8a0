// Files read in place.
#pragma once

#include <memory>

#include "platform/disk.h"
#include "platform/linux/file.h"

namespace orvane {

// A view of a file of `size` bytes. Where another program cuts the file short while it is being
// looked at, the lost bytes read as zero. Null when the system refuses.
std::unique_ptr<FileView> MapFile(const File& file, std::size_t size);

}  // namespace orvane
