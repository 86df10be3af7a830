#include "octets/Inspection.h"

#include <utility>

#include "octets/Cursor.h"
#include "octets/Scanner.h"
#include "octets/TextForm.h"
#include "octets/Verdict.h"

namespace tool::octets {

Inspection::Inspection(const InspectionOptions& options, Source source, Sink sink)
    : options_(options), source_(std::move(source)), sink_(std::move(sink)) {}

std::optional<Finding> Inspection::run() {
  TextForm form(sink_, options_.isColoured);
  if (options_.near) form.keepNear(*options_.near);
  Verdict verdict(options_.vocabularies, options_.limits);
  const auto remark = [&] {
    if (!verdict.refusal()) return;
    const auto& [octet, message] = *verdict.refusal();
    form.remark(octet > 0 ? octet - 1 : 0, "octet " + std::to_string(octet) + ": " + message);
  };
  Cursor cursor([&](char* octets, std::size_t size) {
    const std::size_t count = source_(octets, size);
    octets_ += count;
    const bool wasRefused = verdict.refusal().has_value();
    verdict.read({octets, count});
    if (!wasRefused) remark();
    return count;
  });
  Scanner scanner(cursor, form, options_.hasTables, options_.vocabularies, [&] { verdict.stop(); });
  std::optional<Break> broken;
  try {
    broken = scanner.scan();
    if (!broken && !verdict.refusal()) verdict.end();
    form.flush();
    isTooShort_ = options_.near && *options_.near >= octets_;
  } catch (const TextForm::Enough&) {
    if (!form.hasRemarked()) return std::nullopt;
  }
  const auto& refusal = verdict.refusal();
  const bool isRefusedFirst = refusal && (!broken || refusal->octet <= broken->begin);
  if (isRefusedFirst) return Finding{refusal->octet, refusal->message};
  if (broken) return Finding{broken->octet, broken->message};
  return std::nullopt;
}

}  // namespace tool::octets
