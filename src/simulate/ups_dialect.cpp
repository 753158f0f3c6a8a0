#include "simulate/ups_dialect.h"

namespace orvane {

const UpsDialect* FindUpsDialect(std::string_view name) {
  for (const UpsDialect& dialect : kUpsDialects) {
    if (dialect.name == name) return &dialect;
  }
  return nullptr;
}

}  // namespace orvane
