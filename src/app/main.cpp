#include "app/Application.h"

int main(int argc, char* argv[])
{
    return runOrvo(argc, argv);
}
