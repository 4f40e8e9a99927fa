#pragma once
// The framework raises exceptions as pointers that the catcher deletes; EXPECT_THROW would
// leak them. EXPECT_RAISES checks the type and frees the object.
#include <gtest/gtest.h>

#include "toolkit/Exception.h"

#define EXPECT_RAISES(statement, Type)                          \
  do {                                                          \
    bool raised_ = false;                                       \
    try {                                                       \
      statement;                                                \
    } catch (CException * e_) {                                 \
      raised_ = dynamic_cast<Type*>(e_) != nullptr;             \
      e_->Delete();                                             \
    }                                                           \
    EXPECT_TRUE(raised_) << #statement " did not raise " #Type; \
  } while (0)
