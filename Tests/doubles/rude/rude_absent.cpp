extern "C" int RudeAbsent(); // a library without a function would be left out
extern "C" int RudeAbsent() { return 0; }
