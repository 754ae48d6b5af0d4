#include <gtest/gtest.h>

#include "rw/ordered.h"

TEST(Ordered, RefusesNullItemsAndIndexesPastTheEnd) {
    RWOrdered items;
    RWCollectableString text;
    EXPECT_EQ(nullptr, items.append(nullptr));
    EXPECT_EQ(nullptr, items.insertAt(1, &text));
    EXPECT_EQ(nullptr, items.removeAt(0));
    EXPECT_EQ(0u, items.entries());
}
