// Returns the texts whose contrast with their background is below 4.5 (or 3 for large ones), as WCAG 2 defines it.
const canvas = document.createElement('canvas').getContext('2d', {willReadFrequently: true});
const rgba = color => {
    canvas.clearRect(0, 0, 1, 1);
    canvas.fillStyle = color;
    canvas.fillRect(0, 0, 1, 1);
    return [...canvas.getImageData(0, 0, 1, 1).data];
};
const background = element => {
    for (let at = element; at; at = at.parentElement) {
        const color = rgba(getComputedStyle(at).backgroundColor);
        if (color[3] === 255) {
            return color;
        }
    }
    return [255, 255, 255];
};
const luminance = color => color.slice(0, 3).map(part => part / 255)
    .map(part => part <= 0.04045 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4)
    .reduce((sum, part, i) => sum + part * [0.2126, 0.7152, 0.0722][i], 0);
const low = new Set();
const texts = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
while (texts.nextNode()) {
    const element = texts.currentNode.parentElement;
    const style = getComputedStyle(element);
    if (!texts.currentNode.data.trim() || !element.checkVisibility() || element.closest('script, :disabled, .unseen')) {
        continue;
    }
    const text = rgba(element.closest('svg') ? style.fill : style.color);
    const [dark, light] = [luminance(text), luminance(background(element))].sort((a, b) => a - b);
    const contrast = (light + 0.05) / (dark + 0.05);
    const large = parseFloat(style.fontSize) >= 18.66 && style.fontWeight >= 700 || parseFloat(style.fontSize) >= 24;
    if (contrast < (large ? 3 : 4.5)) {
        low.add(`${contrast.toFixed(2)} ${element.localName}.${element.className} ${texts.currentNode.data.trim()}`);
    }
}
return [...low];
