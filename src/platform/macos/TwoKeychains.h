#pragma once

#include "platform/macos/KeychainCalls.h"

#include <optional>

namespace quorvane {

/// The system's two keychains as the one that the program knows. Which of them holds an item depends on how the program was
/// signed when it was stored: both are read, the data-protection one first, and a new item is stored where this program's belong
/// before one of the same name goes from the other. So a password that an unsigned build has stored opens the signed one.
///
/// The calls are handed in with each question, because some may ask the user and others mustn't.
namespace TwoKeychains {

/// Where there is an item already it gets the new data; where that is refused, it keeps what it has.
bool setPassword(const KeychainCalls& calls, const KeychainItem& item, const QByteArray& data);
/// The older one is gone first, so that it can't be read in place of one that is refused.
bool setBiometric(const KeychainCalls& calls, const KeychainItem& item, const QByteArray& data);
/// An item of the data-protection keychain that isn't given is the answer: the other isn't asked then.
std::optional<QByteArray> read(const KeychainCalls& calls, const KeychainItem& item);
/// Also true for one that can't be read without asking.
bool exists(const KeychainCalls& calls, const KeychainItem& item);
void remove(const KeychainCalls& calls, const KeychainItem& item);

} // namespace TwoKeychains

} // namespace quorvane
