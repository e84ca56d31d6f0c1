// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include <gtest/gtest.h>

// The statement throws exactly this class, and then these checks of `failure` hold.
#define EXPECT_FAILURE_THAT(Class, statement, ...)                            \
  do {                                                                        \
    try {                                                                     \
      statement;                                                              \
      ADD_FAILURE() << #statement " threw nothing";                           \
    } catch (const Class &failure) {                                          \
      __VA_ARGS__;                                                            \
    } catch (const std::exception &failure) {                                 \
      ADD_FAILURE() << #statement " threw another class: " << failure.what(); \
    }                                                                         \
  } while (false)

/// The statement throws exactly this class with exactly this description.
#define EXPECT_FAILURE(Class, description, statement) \
  EXPECT_FAILURE_THAT(Class, statement, EXPECT_EQ(std::string(description), failure.GetDescription()) << #statement)

/// The same, and the failure names this function, scoped and without parentheses.
#define EXPECT_FAILURE_FROM(Class, description, function, statement)                                                 \
  EXPECT_FAILURE_THAT(Class, statement, EXPECT_EQ(std::string(description), failure.GetDescription()) << #statement; \
                      EXPECT_EQ(std::string(function), failure.GetSourceFunction()) << #statement)
