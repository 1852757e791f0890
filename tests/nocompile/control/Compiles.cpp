// EXPECT: no such member
int answer() { return 42; }
