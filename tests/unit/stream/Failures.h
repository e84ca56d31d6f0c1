// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include <gtest/gtest.h>

/// The statement throws exactly this class with exactly this description.
#define EXPECT_FAILURE(Class, description, statement)                              \
  do {                                                                             \
    try {                                                                          \
      statement;                                                                   \
      ADD_FAILURE() << #statement " threw nothing";                                \
    } catch (const Class &failure) {                                               \
      EXPECT_EQ(std::string(description), failure.GetDescription()) << #statement; \
    } catch (const std::exception &failure) {                                      \
      ADD_FAILURE() << #statement " threw another class: " << failure.what();      \
    }                                                                              \
  } while (false)

/// The same, and the failure names this function, scoped and without parentheses.
#define EXPECT_FAILURE_FROM(Class, description, function, statement)               \
  do {                                                                             \
    try {                                                                          \
      statement;                                                                   \
      ADD_FAILURE() << #statement " threw nothing";                                \
    } catch (const Class &failure) {                                               \
      EXPECT_EQ(std::string(description), failure.GetDescription()) << #statement; \
      EXPECT_EQ(std::string(function), failure.GetSourceFunction()) << #statement; \
    } catch (const std::exception &failure) {                                      \
      ADD_FAILURE() << #statement " threw another class: " << failure.what();      \
    }                                                                              \
  } while (false)
