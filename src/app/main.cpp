#include "shell/startup.h"

int main(int argc, char *argv[])
{
    return shell::Main(argc, argv);
}
