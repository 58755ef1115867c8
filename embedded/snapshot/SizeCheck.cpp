#include <optional>

#include "embedded/snapshot/Checks.h"

namespace embedded::snapshot {

namespace {

[[noreturn]] void refuseSize(const CheckContext& context, const Place& place, const std::string& reason) {
  context.fail("snapshot.wrong-size", {place, "size"}, reason);
}

/// Without a value when it is too big for any array.
std::optional<std::size_t> productOf(const std::vector<std::size_t>& size) {
  std::size_t product = 1;
  bool tooBig = false;
  for (const std::size_t dimension : size) {
    if (dimension == 0) return 0;
    tooBig = tooBig || __builtin_mul_overflow(product, dimension, &product);
  }
  return tooBig ? std::nullopt : std::optional(product);
}

}  // namespace

void checkSize(const CheckContext& context, const std::vector<std::size_t>& size, std::size_t count,
               const Place& place) {
  if (size.empty()) return;
  if (size.size() == 1) refuseSize(context, place, "a size has at least two dimensions");
  if (productOf(size) == count) return;
  refuseSize(context, place,
             "there are " + std::to_string(count) + " elements, which is not the product of the dimensions");
}

void checkBareSize(const CheckContext& context, const std::vector<std::size_t>& size, const Place& place) {
  if (size.size() == 1) refuseSize(context, place, "a size has at least two dimensions");
  if (!productOf(size)) refuseSize(context, place, "the product of the dimensions is too big");
}

}  // namespace embedded::snapshot
