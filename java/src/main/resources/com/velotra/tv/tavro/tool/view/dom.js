// Elements are made with text nodes only: text from a record is never read as markup.

const byId = id => document.getElementById(id);

function append(element, attributes, children) {
    for (const [name, value] of Object.entries(attributes || {})) {
        if (name.startsWith('on')) {
            element.addEventListener(name.slice(2), value);
        } else if (value === true) {
            element.setAttribute(name, '');
        } else if (value !== false && value !== null && value !== undefined) {
            element.setAttribute(name, value);
        }
    }
    element.append(...children.flat().filter(child => child !== null && child !== undefined));
    return element;
}

/** Replaces what an element contains; arrays are taken apart, and null is left out. */
function fill(element, ...children) {
    element.replaceChildren();
    return append(element, null, children.flat(2));
}

/** Makes an HTML element. */
const el = (tag, attributes, ...children) => append(document.createElement(tag), attributes, children);

/** Makes an SVG element. */
const svg = (tag, attributes, ...children) =>
    append(document.createElementNS('http://www.w3.org/2000/svg', tag), attributes, children);

/** Text from a record, whose writing direction must not change the text around it. */
const bdi = text => el('bdi', null, text);

const plural = (count, noun) => `${count.toLocaleString('en')} ${noun}${count === 1 ? '' : 's'}`;

const capital = text => text[0].toUpperCase() + text.slice(1);

/**
 * Makes one of several elements the only one that the Tab key reaches; arrow keys move among them. Elements are in the
 * order of the keys. Returns a function that makes one of them current.
 */
function rove(container, elements) {
    let current = 0;
    const choose = index => {
        elements[current]?.setAttribute('tabindex', '-1');
        current = Math.max(0, Math.min(elements.length - 1, index));
        elements[current]?.setAttribute('tabindex', '0');
    };
    elements.forEach(element => element.setAttribute('tabindex', '-1'));
    choose(0);
    const steps = {ArrowRight: 1, ArrowDown: 1, ArrowLeft: -1, ArrowUp: -1, PageDown: 10, PageUp: -10};
    container.addEventListener('keydown', event => {
        const at = elements.indexOf(event.target);
        const to = event.key === 'Home' ? 0 : event.key === 'End' ? elements.length - 1 : at + steps[event.key];
        if (at >= 0 && !Number.isNaN(to) && !event.ctrlKey && !event.altKey && !event.metaKey) {
            event.preventDefault();
            choose(to);
            elements[current].focus();
        }
    });
    container.addEventListener('focusin', event => {
        const at = elements.indexOf(event.target);
        if (at >= 0) {
            choose(at);
        }
    });
    return choose;
}
