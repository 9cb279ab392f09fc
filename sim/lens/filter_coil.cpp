#include "sim/lens/filter_coil.h"

namespace kelvo::sim::camera {

const char* name_of(FilterPlace place) {
  switch (place) {
    case FilterPlace::off: return "off";
    case FilterPlace::on: return "on";
    case FilterPlace::between: return "between";
  }
  return "";
}

void FilterCoil::fit(FilterPlace place) {
  *this = FilterCoil{};
  place_ = place;
}

void FilterCoil::connect(Time now, bool connected) {
  release(now);
  connected_ = connected;
}

void FilterCoil::drive(Time now, FilterPlace towards) {
  if (!connected_ || (driven_ && towards_ == towards)) return;
  release(now);
  driven_ = true;
  towards_ = towards;
  since_ = now;
}

void FilterCoil::release(Time now) {
  place_ = place(now);
  driven_ = false;
}

FilterPlace FilterCoil::place(Time now) const {
  return driven_ && now - since_ >= throw_time ? towards_ : place_;
}

}  // namespace kelvo::sim::camera
