#include "app/program.h"

int main(int argc, char *argv[])
{
    return pg::app::Main(argc, argv);
}
