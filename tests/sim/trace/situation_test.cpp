#include "sim/trace/situation.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string_view>
#include <vector>

namespace {

using kelvo::sim::trace::Act;
using kelvo::sim::trace::Event;
using kelvo::sim::trace::Situation;
using kelvo::sim::trace::Wire;
using Frame = std::vector<std::uint8_t>;

Event followed_event(Wire wire, Act act, const Frame& sent, const Frame& received = {}) {
  Event event{};
  event.wire = wire;
  event.act = act;
  add_sent(event, sent);
  add_received(event, received);
  return event;
}

Event lens_event(const Frame& sent, int result = 0) {
  Event event = followed_event(Wire::lens, Act::transfer, sent);
  event.result = result;
  return event;
}

Event family_event(const Frame& received, std::uint16_t slave = 40) {
  Event event = followed_event(Wire::head, Act::transfer, {240}, received);
  event.slave = slave;
  event.messages = 2;
  event.result = 2;
  return event;
}

Event shell_event(std::string_view command) {
  return followed_event(Wire::reset_line, Act::shell, Frame(command.begin(), command.end()));
}

const Frame start = {0xE2, 0, 0, 0, 0xA0};

int module_after(Situation& situation, std::initializer_list<Event> events) {
  for (Event event : events) situation.follow(event);
  Event next = lens_event({1, 2, 3});
  situation.follow(next);
  return next.module;
}

int family_after(Situation& situation, std::initializer_list<Event> events) {
  for (Event event : events) situation.follow(event);
  Event next = lens_event({1, 2, 3});
  situation.follow(next);
  return next.family;
}

TEST(Situation, KnowsNothingAtFirst) {
  Situation situation;
  EXPECT_EQ(module_after(situation, {}), 0);
  EXPECT_EQ(family_after(situation, {}), -1);
}

TEST(Situation, KnowsTheModuleByTheSizeOfItsImageOnceItIsStarted) {
  Situation situation;
  EXPECT_EQ(module_after(situation, {lens_event(Frame(35000)), lens_event(Frame(1160)),
                                     lens_event(Frame(648))}),
            0);
  EXPECT_EQ(module_after(situation, {lens_event(start)}), 8);
  EXPECT_EQ(module_after(situation,
                         {lens_event({0x12, 0, 0, 0, 0xA0}), lens_event({5, 0, 0, 0, 0, 5, 0})}),
            8);
}

TEST(Situation, HasTheStateBeforeAnEventInIt) {
  Situation situation;
  module_after(situation, {lens_event(Frame(33000))});
  Event event = lens_event(start);
  situation.follow(event);
  EXPECT_EQ(event.module, 0);
  event = lens_event(start);
  situation.follow(event);
  EXPECT_EQ(event.module, 9);
}

TEST(Situation, DoesNotKnowAModuleByImagesThatTwoHave) {
  Situation situation;
  EXPECT_EQ(
      module_after(situation, {lens_event(Frame(1160)), lens_event(Frame(648)), lens_event(start)}),
      0);
}

TEST(Situation, LearnsNothingFromAFailure) {
  Situation situation;
  EXPECT_EQ(module_after(situation, {lens_event(Frame(33276), -EIO), lens_event(start)}), 0);
  EXPECT_EQ(module_after(situation, {lens_event(Frame(33276)), lens_event(start, -EIO)}), 0);
}

TEST(Situation, EndsWithAReset) {
  Situation situation;
  EXPECT_EQ(module_after(situation, {lens_event(Frame(33276)), lens_event(start)}), 7);
  EXPECT_EQ(module_after(situation, {shell_event("echo 1 > /sys/class/gpio/gpio33/value")}), 7);
  EXPECT_EQ(module_after(situation, {shell_event("echo 0 > /sys/class/gpio/gpio33/value")}), 0);
  EXPECT_EQ(module_after(situation, {lens_event(start)}), 0);
}

TEST(Situation, KnowsTheFamilyByTheSignatureOfThePanController) {
  Situation situation;
  EXPECT_EQ(family_after(situation, {family_event({'V', 'X'}, 41)}), -1);
  EXPECT_EQ(family_after(situation, {family_event({'V', 'X'})}), 1);
  EXPECT_EQ(family_after(situation, {family_event({'V', 0})}), 2);
  EXPECT_EQ(family_after(situation, {family_event({'V'})}), 2);
}

}  // namespace
