// Does nothing: loading and unloading the bridge is all there is to see of it.
int main() { return 0; }
