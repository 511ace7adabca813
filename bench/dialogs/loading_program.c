#include <korvel/strings.h>

int main(void) {
  char text[] = "Dupont   ";
  return chelibl_f(text) == 6 ? 0 : 1;
}
