// A plug-in that was built with other headers, or with a library that is not here: nobody has what it calls.

struct VLMNeverMade {
  static int Call(int number);
};

#ifdef HVX_NEEDED
int VLMNeverMade::Call(int number) {
  return number;
}
#else
extern "C" __attribute__((visibility("default"))) int HVXGetUpgradeLibrary();

extern "C" int HVXGetUpgradeLibrary() {
  return VLMNeverMade::Call(1);
}
#endif
