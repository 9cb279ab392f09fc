#include <kelvo.h>

#include <cstdio>

#include "sim/testing/test_camera.h"

int main() {
  kelvo::sim::TestCamera camera("module=df033 head=vetra");
  SetLensType(8);
  setFocusForward(100, 200);
  usleep(1'000'000);  // the camera's clock goes on: the test does not wait
  const int focus = camera.position(kelvo::sim::camera::Output::focus_channel);
  camera.change([](auto& simulated) { simulated.push(kelvo::sim::camera::HeadAxis::pan, 100); });
  for (const std::string& line : camera.violations()) std::puts(line.c_str());
  std::printf("focus at %d\n", focus);
  return focus == 1600 && camera.violations().empty() ? 0 : 1;
}
