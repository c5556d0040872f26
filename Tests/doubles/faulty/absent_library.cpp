extern "C" int Absent(); // a library without a function would be left out
extern "C" int Absent() { return 0; }
