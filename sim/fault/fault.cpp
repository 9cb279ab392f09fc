#include "sim/fault/fault.h"

#include "sim/fault/busy.h"
#include "sim/fault/names.h"

namespace kelvo::sim::fault {
namespace {

bool is_of(const std::optional<Register>& reg, const Transfer& transfer) {
  if (!reg) return true;
  if (!transfer.reg) return false;
  return *transfer.reg == (transfer.family == wire::HeadFamily::vetra ? reg->vetra : reg->tasmere);
}

bool can_suffer(const Effect& effect, const Transfer& transfer) {
  if (effect.kind == EffectKind::busy) return tells_status(transfer);
  if (effect.kind != EffectKind::flip) return true;
  return effect.byte < (effect.received ? transfer.received : transfer.sent);
}

}  // namespace

bool Fault::waits_for(const Transfer& transfer) const {
  return port == transfer.port && (frames & bit(transfer.frame)) != 0 &&
         (!code || code == transfer.code) && is_of(reg, transfer) &&
         (!slave || slave == transfer.slave) &&
         (files == 0 || (files & files_called(transfer.path)) != 0) && can_suffer(effect, transfer);
}

bool Fault::due() const {
  return matches >= nth && (matches - nth) % every == 0 && (times == 0 || struck < times);
}

}  // namespace kelvo::sim::fault
