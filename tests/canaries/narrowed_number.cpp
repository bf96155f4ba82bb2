// Loses bits without saying so; every compiler must refuse to compile it.
float half(double number) {
    return number / 2;
}
