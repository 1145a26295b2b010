#include "KV_Akum/KV_Akum.h"

int main(int argument_count, char** arguments) {
  KV_Akum::RunProgram(argument_count, arguments);
}
