#include "ui/log_text.h"

#include <QtCore/qstringconverter.h>

#include "ui/long_list.h"

namespace orvane {
namespace {

// No character takes more bytes than four.
constexpr std::size_t kMostBytes = 4 * static_cast<std::size_t>(LineModel::kMostShown);

}  // namespace

QString LogText(std::string_view line) {
  const std::string_view head = line.substr(0, kMostBytes);
  const QByteArrayView bytes(head.data(), static_cast<qsizetype>(head.size()));
  // A character that the cut goes through is no mistake of the line.
  const bool cut = head.size() < line.size();
  QStringDecoder utf8(QStringDecoder::Utf8,
                      cut ? QStringDecoder::Flag::Default : QStringDecoder::Flag::Stateless);
  QString text = utf8.decode(bytes);
  if (!utf8.hasError()) return text;
  QStringDecoder gb("GB18030");
  return gb.isValid() ? QString(gb.decode(bytes)) : text;
}

}  // namespace orvane
