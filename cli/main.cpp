// orrelin-cli: the command-line tool over the catalog store.
#include <cstdio>

int main() {
  std::puts("orrelin-cli");
  return 0;
}
