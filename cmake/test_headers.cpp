// Nothing of its own: the program that the precompiled headers of the tests belong to.
int main() {}
