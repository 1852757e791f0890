// EXPECT: a char is one byte
static_assert(sizeof(char) == 2, "a char is one byte");
