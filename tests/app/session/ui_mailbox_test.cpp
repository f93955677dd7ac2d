#include "app/session/ui_mailbox.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <vector>

namespace vgps {
namespace {

const UiMailbox::Handler kIgnore = [](const UiMessage&) {};

TEST(UiMailbox, SendersWaitUntilTheirMessageIsHandled) {
  constexpr int kSenders = 4;
  constexpr int kEach = 200;
  UiMailbox mailbox;
  int handled = 0;  // only the user-interface thread writes it, and the senders see it
  std::atomic<int> finished{0};
  std::vector<std::thread> senders;
  for (int i = 0; i < kSenders; ++i) {
    senders.emplace_back([&] {
      for (int k = 0; k < kEach; ++k) {
        std::string text = "line";
        bool seen = false;
        EXPECT_TRUE(mailbox.send({.event = UiEvent::line, .text = text, .record = &seen}));
        EXPECT_TRUE(seen);
        text = "gone";
      }
      ++finished;
    });
  }
  while (finished < kSenders) {
    mailbox.wait(5, [&](const UiMessage& message) {
      EXPECT_EQ(message.text, "line");
      *static_cast<bool*>(const_cast<void*>(message.record)) = true;
      ++handled;
    });
  }
  for (std::thread& sender : senders) sender.join();
  EXPECT_EQ(handled, kSenders * kEach);
}

TEST(UiMailbox, PostsReturnAtOnceAndKeepTheirOrder) {
  UiMailbox mailbox;
  for (int i = 0; i < 3; ++i) mailbox.post({.event = UiEvent::sensor, .x = double(i)});
  std::vector<double> seen;
  EXPECT_EQ(mailbox.wait(0, [&](const UiMessage& message) { seen.push_back(message.x); }),
            UiMailbox::WaitResult::handled);
  EXPECT_EQ(seen, (std::vector<double>{0, 1, 2}));
  EXPECT_EQ(mailbox.wait(0, kIgnore), UiMailbox::WaitResult::nothing);
}

TEST(UiMailbox, AHandlerMaySendAndPost) {
  UiMailbox mailbox;
  std::vector<UiEvent> seen;
  const UiMailbox::Handler handler = [&](const UiMessage& message) {
    seen.push_back(message.event);
    if (message.event != UiEvent::sensor) return;
    EXPECT_TRUE(mailbox.send({.event = UiEvent::repaint}));
    mailbox.post({.event = UiEvent::refresh});
  };
  mailbox.post({.event = UiEvent::sensor});
  EXPECT_EQ(mailbox.wait(0, handler), UiMailbox::WaitResult::handled);
  EXPECT_EQ(mailbox.wait(0, handler), UiMailbox::WaitResult::handled);
  EXPECT_EQ(seen, (std::vector<UiEvent>{UiEvent::sensor, UiEvent::repaint, UiEvent::refresh}));
}

TEST(UiMailbox, ShuttingFreesWhoeverWaits) {
  UiMailbox mailbox;
  std::vector<std::thread> senders;
  std::atomic<int> refused{0};
  for (int i = 0; i < 3; ++i) {
    senders.emplace_back([&] { refused += mailbox.send({.event = UiEvent::line}) ? 0 : 1; });
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(20));  // nobody handles anything
  mailbox.close();
  for (std::thread& sender : senders) sender.join();
  EXPECT_EQ(refused, 3);
  EXPECT_FALSE(mailbox.send({.event = UiEvent::line}));
  mailbox.post({.event = UiEvent::refresh});
  EXPECT_EQ(mailbox.wait(-1, kIgnore), UiMailbox::WaitResult::closed);
}

TEST(UiMailbox, AMessageInHandIsFinishedWhenTheDoorShuts) {
  UiMailbox mailbox;
  bool told = false;
  std::thread sender([&] { told = mailbox.send({.event = UiEvent::line}); });
  EXPECT_EQ(mailbox.wait(-1, [&](const UiMessage&) { mailbox.close(); }),
            UiMailbox::WaitResult::handled);
  sender.join();
  EXPECT_TRUE(told);
}

}  // namespace
}  // namespace vgps
